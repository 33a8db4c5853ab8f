#include "providers/database/sqlite/catalog.h"

#include <utility>

#include "platform/failure.h"
#include "providers/database/sqlite/connection.h"
#include "providers/database/sqlite/connection_text.h"
#include "providers/database/sqlite/schema.h"
#include "providers/database/sqlite/store_failure.h"

namespace vok {
namespace {

constexpr int32_t kCreateTimeout = 30;  // seconds, the platform's default

}  // namespace

void SqliteCatalog::Create(const std::string& connection_string) {
  path_ = ParseConnectionText(connection_string).data_source;
  const std::string native = files_.NativePath(path_);
  FolderLock making(native, FolderLock::Kind::kAlone, kCreateTimeout);
  RefuseExisting();
  store_ = SqliteStore::InMemory(locale_, patience_, native);
  making_ = std::move(making);
}

void SqliteCatalog::Keep() {
  const std::string bytes = Store().Bytes();
  RefuseExisting();
  try {
    WriteWholeFile(files_, path_, bytes);
  } catch (const Failure& failure) {
    ThrowUnusable(files_.NativePath(path_), "it cannot be made. " + failure.description());
  }
  store_.reset();
  making_ = FolderLock();
}

void SqliteCatalog::RefuseExisting() const {
  if (!files_.Exists(path_) && !files_.IsDirectory(path_)) return;
  ThrowUnusable(files_.NativePath(path_), "it exists already and was left as it is.");
}

void SqliteCatalog::SetActiveConnection(Connection& connection) { store_ = StoreOf(connection); }

std::vector<std::string> SqliteCatalog::TableNames() const { return vok::TableNames(Store()); }

int32_t SqliteCatalog::ColumnCount(const std::string& table) const {
  const auto found = TableNamed(Store(), table, failure_number::kItemNotFound);
  return static_cast<int32_t>(found.columns.size());
}

void SqliteCatalog::AppendTable(const TableDefinition& table) { AddTable(Store(), table); }

void SqliteCatalog::AppendColumn(const std::string& table, const ColumnDefinition& column) {
  AddColumn(Store(), table, column);
}

void SqliteCatalog::AppendIndex(const std::string& table, const IndexDefinition& index) {
  AddIndex(Store(), table, index);
}

SqliteStore& SqliteCatalog::Store() const {
  if (!store_) {
    throw Failure(failure_number::kObjectClosed, "The catalog has no connection");
  }
  return *store_;
}

}  // namespace vok
