#include "providers/database/sqlite/sqlite_database.h"

#include <utility>
#include <vector>

#include "platform/database.h"
#include "platform/failure.h"
#include "providers/database/sqlite/rows.h"
#include "providers/database/sqlite/structure.h"

namespace vok {

SqliteRows::SqliteRows(std::shared_ptr<SqliteStore> store, const std::string& source)
    : store_(std::move(store)), selection_(Select(*store_, source)) {}

void SqliteRows::MoveFirst() {
  position_ = 0;
  CheckNotAtEnd();
}

void SqliteRows::MoveNext() {
  CheckNotAtEnd();
  ++position_;
}

int32_t SqliteRows::FieldCount() const {
  return static_cast<int32_t>(selection_.table.columns.size());
}

std::string SqliteRows::FieldName(int32_t index) const {
  return selection_.table.columns[Checked(index)].name;
}

Value SqliteRows::Field(int32_t index) const { return FieldAt(Checked(index)); }

Value SqliteRows::Field(const std::string& name) const { return FieldAt(IndexOf(name)); }

void SqliteRows::Add(const Fields& fields) {
  const Locale& locale = store_->locale();
  const auto& columns = selection_.table.columns;
  std::vector<Value> row;
  row.reserve(columns.size());
  for (const ColumnDefinition& column : columns) row.push_back(ToStored(locale, column, Null{}));
  for (const auto& [name, value] : fields) {
    const std::size_t place = IndexOf(name);
    row[place] = ToStored(locale, columns[place], value);
  }
  Insert(*store_, selection_.table, row);
  selection_.rows.push_back(std::move(row));
  position_ = selection_.rows.size() - 1;
}

void SqliteRows::CheckNotAtEnd() const {
  if (!AtEnd()) return;
  throw Failure(failure_number::kNoCurrentRecord,
                "No current record: the record set is empty or at its end");
}

std::size_t SqliteRows::IndexOf(const std::string& name) const {
  const TableDefinition& table = selection_.table;
  const auto* column = FindColumn(store_->locale(), table, name);
  if (column == nullptr) {
    throw Failure(failure_number::kItemNotFound,
                  "Item cannot be found in the collection: table \"" + table.name +
                      "\" gave no field \"" + name + "\"");
  }
  return static_cast<std::size_t>(column - table.columns.data());
}

std::size_t SqliteRows::Checked(int32_t index) const {
  if (index < 0 || index >= FieldCount()) {
    throw Failure(failure_number::kItemNotFound,
                  "Item cannot be found in the collection: field number " + std::to_string(index));
  }
  return static_cast<std::size_t>(index);
}

Value SqliteRows::FieldAt(std::size_t place) const {
  CheckNotAtEnd();
  return selection_.rows[position_][place];
}

std::unique_ptr<Rows> SqliteConnection::Query(const std::string& statement) {
  return std::make_unique<SqliteRows>(store_, statement);
}

std::unique_ptr<WritableTable> SqliteConnection::OpenTable(const std::string& name) {
  return std::make_unique<SqliteRows>(store_, name);
}

void SqliteConnection::Execute(const std::string& statement) { Run(*store_, statement); }

std::unique_ptr<DatabaseStructure> SqliteConnection::OpenStructure() {
  return std::make_unique<SqliteStructure>(store_);
}

void SqliteConnection::Begin(Purpose) {
  if (store_->InTransaction()) {
    throw Failure(failure_number::kInvalidCall, "A save has begun already; end that one first");
  }
  store_->BeginWriting();
}

void SqliteConnection::Commit() {
  if (!store_->InTransaction()) {
    throw Failure(failure_number::kInvalidCall, "No save has begun, or it was taken back");
  }
  store_->Execute("COMMIT");
}

std::unique_ptr<Connection> SqliteDatabase::Open(const std::string& path, int32_t timeout) {
  return std::make_unique<SqliteConnection>(OpenStore(path, timeout));
}

std::unique_ptr<DatabaseStructure> SqliteDatabase::OpenStructure(const std::string& path) {
  return std::make_unique<SqliteStructure>(OpenStore(path, kDefaultTimeout));
}

std::unique_ptr<NewDatabase> SqliteDatabase::Create(const std::string& path) {
  return std::make_unique<SqliteNewDatabase>(files_, locale_, patience_, path);
}

std::shared_ptr<SqliteStore> SqliteDatabase::OpenStore(const std::string& path, int32_t timeout) {
  const bool jet = open_jet_file_ && !files_.IsDirectory(path) &&
                   KindOfDatabase(files_, path) == DatabaseKind::kJet;
  return jet ? open_jet_file_(path) : SqliteStore::Open(files_, locale_, patience_, path, timeout);
}

}  // namespace vok
