#include "providers/database/jet/jet_files.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "platform/failure.h"
#include "providers/database/jet/child_program.h"
#include "providers/database/jet/jet_answer.h"
#include "providers/database/sqlite/rows.h"
#include "providers/database/sqlite/store_failure.h"
#include "providers/database/sqlite/structure.h"
#include "providers/database/sqlite/table_schema.h"

namespace vok::jet {
namespace {

constexpr ChildLimits kLimits = {32UL << 20, std::chrono::seconds(60)};

std::string WhyNotWritten(const std::string& file) {
  return "it is a Jet database, which is read here but never written. Nothing was changed. Copy "
         "its "
         "sets into another settings folder, and work there: vokcube settings import \"" +
         file + "\" --settings-folder FOLDER";
}

[[noreturn]] void ThrowNoReader(const std::string& file, const std::vector<std::string>& places) {
  std::string tried;
  for (const std::string& place : places) tried += (tried.empty() ? "" : ", ") + place;
  ThrowUnusable(file, "it is a Jet database, and the program that reads those is not there (" +
                          tried + "). It is built where libmdb is found (Debian: mdbtools-dev).");
}

/// A wanted column that is left out must not seem to be empty.
void CheckUnread(const std::string& file, const Locale& locale, const TableDefinition& wanted,
                 const std::vector<std::string>& unread) {
  for (const ColumnDefinition& column : wanted.columns) {
    const bool is_unread = std::any_of(unread.begin(), unread.end(), [&](const std::string& name) {
      return EqualNoCase(locale, column.name, name);
    });
    if (!is_unread) continue;
    ThrowUnusable(file, "its column " + column.name + " of the table " + wanted.name +
                            " is of a kind that is not read, such as a memo. In Access, make it "
                            "a text, a whole number, a date or a yes/no, as it was made.");
  }
}

void AddRows(SqliteStore& store, const Locale& locale, const Shape& shape, const TableRows& table) {
  AddTable(store, table.definition);
  for (const std::vector<Value>& row : table.rows) {
    std::vector<Value> stored;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const ColumnDefinition& column = table.definition.columns[i];
      stored.push_back(ToStored(locale, column, row[i].IsNull() ? shape.nothing(column) : row[i]));
    }
    Insert(store, table.definition, stored);
  }
}

}  // namespace

JetFiles::JetFiles(Files& files, const Locale& locale, std::vector<std::string> readers,
                   Shape shape)
    : files_(files), locale_(locale), readers_(std::move(readers)), shape_(std::move(shape)) {}

std::shared_ptr<SqliteStore> JetFiles::Open(const std::string& path) {
  const std::string native = files_.NativePath(path);
  const JetAnswer answer = Read(native);
  if (!answer.failure.empty()) ThrowUnusable(native, "it " + answer.failure);
  if (answer.tables.empty()) {
    ThrowUnusable(native, "it is a Jet database, but has none of the tables of settings.");
  }
  for (const TableRows& table : answer.tables) {
    for (const TableDefinition& wanted : shape_.tables) {
      if (wanted.name != table.definition.name) continue;
      CheckUnread(native, locale_, wanted, table.unread);
    }
  }
  auto store = SqliteStore::InMemory(locale_, patience_, native);
  WriteScope scope(*store);
  try {
    for (const TableRows& table : answer.tables) AddRows(*store, locale_, shape_, table);
  } catch (const Failure& failure) {
    ThrowUnusable(native, "it is damaged: " + failure.description());
  }
  SqliteStructure structure(store);
  shape_.complete(structure);
  scope.Commit();
  store->RefuseWriting(WhyNotWritten(native));
  return store;
}

JetAnswer JetFiles::Read(const std::string& native) const {
  const auto reader = std::find_if(readers_.begin(), readers_.end(), [](const std::string& place) {
    return ::access(place.c_str(), X_OK) == 0;
  });
  if (reader == readers_.end()) ThrowNoReader(native, readers_);
  std::vector<std::string> arguments = {native};
  for (const TableDefinition& table : shape_.tables) arguments.push_back(table.name);
  const ChildAnswer printed = RunChild(*reader, arguments, kLimits);
  if (auto answer = ParseAnswer(printed.output)) return *std::move(answer);
  ThrowUnusable(native,
                "it is a Jet database that cannot be read, perhaps because it is damaged: the "
                "program " +
                    *reader + " " + printed.end +
                    ". Let Access compact and repair the file, or take an older copy.");
}

}  // namespace vok::jet
