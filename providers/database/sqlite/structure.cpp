#include "providers/database/sqlite/structure.h"

#include "platform/failure.h"
#include "providers/database/sqlite/store_failure.h"
#include "providers/database/sqlite/table_schema.h"

namespace vok {

std::vector<std::string> SqliteStructure::TableNames() const { return vok::TableNames(*store_); }

int32_t SqliteStructure::ColumnCount(const std::string& table) const {
  const auto found = TableNamed(*store_, table, failure_number::kItemNotFound);
  return static_cast<int32_t>(found.columns.size());
}

void SqliteStructure::AppendTable(const TableDefinition& table) { AddTable(*store_, table); }

void SqliteStructure::AppendColumn(const std::string& table, const ColumnDefinition& column) {
  AddColumn(*store_, table, column);
}

void SqliteStructure::AppendIndex(const std::string& table, const IndexDefinition& index) {
  AddIndex(*store_, table, index);
}

SqliteNewDatabase::SqliteNewDatabase(Files& files, const Locale& locale, LockPatience& patience,
                                     std::string path)
    : files_(files),
      path_(std::move(path)),
      making_(files.NativePath(path_), FolderLock::Kind::kAlone, kDefaultTimeout, patience),
      store_(SqliteStore::InMemory(locale, patience, files.NativePath(path_))),
      structure_(store_) {
  RefuseExisting();
}

void SqliteNewDatabase::Keep() {
  const std::string bytes = store_->Bytes();
  RefuseExisting();
  try {
    WriteWholeFile(files_, path_, bytes);
  } catch (const Failure& failure) {
    ThrowUnusable(files_.NativePath(path_), "it cannot be made. " + failure.description());
  }
  making_ = FolderLock();
}

void SqliteNewDatabase::RefuseExisting() const {
  if (!files_.Exists(path_) && !files_.IsDirectory(path_)) return;
  ThrowUnusable(files_.NativePath(path_), "it exists already and was left as it is.");
}

}  // namespace vok
