#include "providers/sqlite/catalog.h"

#include <utility>

#include "platform/failure.h"
#include "providers/sqlite/connection.h"
#include "providers/sqlite/connection_text.h"
#include "providers/sqlite/schema.h"

namespace vok {
namespace {

constexpr int32_t kCreateTimeout = 30;  // seconds, the platform's default

}  // namespace

void SqliteCatalog::Create(const std::string& connection_string) {
  const auto text = ParseConnectionText(connection_string);
  FolderLock making(files_.NativePath(text.data_source), FolderLock::Kind::kAlone, kCreateTimeout);
  store_ = SqliteStore::Create(files_, locale_, text.data_source, kCreateTimeout);
  making_ = std::move(making);
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
