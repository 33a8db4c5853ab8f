// The structure of a settings database.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/database.h"
#include "providers/sqlite/folder_lock.h"
#include "providers/sqlite/store.h"

namespace vok {

/// Every operation before `Create` or `SetActiveConnection` fails with 3704. `files` and `locale`
/// outlive it.
class SqliteCatalog : public DatabaseCatalog {
 public:
  SqliteCatalog(Files& files, const Locale& locale) : files_(files), locale_(locale) {}

  /// Others that open or make the file wait until this catalog goes.
  void Create(const std::string& connection_string) override;
  void SetActiveConnection(Connection& connection) override;
  /// In the order of their making.
  std::vector<std::string> TableNames() const override;
  int32_t ColumnCount(const std::string& table) const override;
  void AppendTable(const TableDefinition& table) override;
  void AppendColumn(const std::string& table, const ColumnDefinition& column) override;
  void AppendIndex(const std::string& table, const IndexDefinition& index) override;

 private:
  SqliteStore& Store() const;

  Files& files_;
  const Locale& locale_;
  FolderLock making_;
  std::shared_ptr<SqliteStore> store_;
};

}  // namespace vok
