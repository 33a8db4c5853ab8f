#include "providers/database/sqlite/recordset.h"

#include <utility>

#include "platform/failure.h"
#include "providers/database/sqlite/connection.h"
#include "providers/database/sqlite/numbers.h"
#include "providers/database/sqlite/rows.h"

namespace vok {
namespace {

[[noreturn]] void ThrowNoRow() {
  throw Failure(failure_number::kNoCurrentRecord,
                "There is no current record: the record set is empty or at its end");
}

}  // namespace

void SqliteRecordset::SetActiveConnection(Connection* connection) {
  store_ = connection == nullptr ? nullptr : StoreOf(*connection);
}

void SqliteRecordset::Open(const std::string& source, CursorType, LockType lock, int32_t) {
  if (open_) {
    throw Failure(failure_number::kInvalidCall, "The record set is open already. Close it first.");
  }
  if (!store_) {
    throw Failure(failure_number::kObjectClosed, "The record set has no connection to open with");
  }
  if (lock != LockType::kUnspecified) lock_ = lock;
  auto [table, rows] = Select(*store_, source);
  table_ = std::move(table);
  rows_ = std::move(rows);
  position_ = 0;
  open_ = true;
}

void SqliteRecordset::Close() {
  CheckOpen();
  new_row_.reset();
  rows_.clear();
  open_ = false;
}

int32_t SqliteRecordset::RecordCount() const {
  CheckOpen();
  return static_cast<int32_t>(rows_.size());
}

bool SqliteRecordset::EndOfFile() const {
  CheckOpen();
  return position_ >= rows_.size();
}

void SqliteRecordset::MoveFirst() {
  CheckOpen();
  if (new_row_) Update();
  if (rows_.empty()) ThrowNoRow();
  position_ = 0;
}

void SqliteRecordset::MoveNext() {
  CheckOpen();
  if (new_row_) Update();
  if (position_ >= rows_.size()) ThrowNoRow();
  ++position_;
}

int32_t SqliteRecordset::FieldCount() const {
  CheckOpen();
  return static_cast<int32_t>(table_.columns.size());
}

std::string SqliteRecordset::FieldName(int32_t index) const {
  return table_.columns[Checked(index)].name;
}

Value SqliteRecordset::Field(int32_t index) const {
  const std::size_t place = Checked(index);
  return CurrentRow()[place];
}

Value SqliteRecordset::Field(const std::string& name) const {
  const std::size_t place = IndexOf(name);
  return CurrentRow()[place];
}

void SqliteRecordset::AddNew() {
  CheckOpen();
  if (new_row_) Update();
  if (lock_ == LockType::kReadOnly) {
    throw Failure(failure_number::kFeatureNotAvailable,
                  "The record set of table \"" + table_.name + "\" was opened for reading alone");
  }
  new_row_.emplace();
  for (const ColumnDefinition& column : table_.columns) {
    new_row_->push_back(ToStored(locale_, column, Null{}));
  }
}

void SqliteRecordset::SetField(const std::string& name, const Value& value) {
  const std::size_t place = IndexOf(name);
  if (!new_row_) {
    throw Failure(failure_number::kFeatureNotAvailable,
                  "Field " + name + " cannot be assigned to: no new record was begun");
  }
  (*new_row_)[place] = ToStored(locale_, table_.columns[place], value);
}

void SqliteRecordset::Update() {
  CheckOpen();
  if (!new_row_) return;
  if (!store_) {
    throw Failure(failure_number::kObjectClosed,
                  "The new record cannot be stored: the record set is detached");
  }
  Insert(*store_, table_, *new_row_);
  rows_.push_back(*std::exchange(new_row_, std::nullopt));
  position_ = rows_.size() - 1;
}

void SqliteRecordset::CheckOpen() const {
  if (!open_) {
    throw Failure(failure_number::kObjectClosed,
                  "Operation is not allowed when the object is closed: the record set");
  }
}

std::size_t SqliteRecordset::IndexOf(const std::string& name) const {
  CheckOpen();
  const auto* column = FindColumn(locale_, table_, name);
  if (column == nullptr) {
    throw Failure(failure_number::kItemNotFound,
                  "Item cannot be found in the collection: table \"" + table_.name +
                      "\" gave no field \"" + name + "\"");
  }
  return static_cast<std::size_t>(column - table_.columns.data());
}

std::size_t SqliteRecordset::Checked(int32_t index) const {
  CheckOpen();
  if (index < 0 || index >= FieldCount()) {
    throw Failure(failure_number::kItemNotFound,
                  "Item cannot be found in the collection: field number " + std::to_string(index));
  }
  return static_cast<std::size_t>(index);
}

const SqliteRecordset::Row& SqliteRecordset::CurrentRow() const {
  if (new_row_) return *new_row_;
  if (position_ >= rows_.size()) ThrowNoRow();
  return rows_[position_];
}

}  // namespace vok
