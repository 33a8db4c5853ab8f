// The structure of a settings database.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/database.h"
#include "providers/database/sqlite/folder_lock.h"
#include "providers/database/sqlite/store.h"

namespace vok {

/// Every operation before `Create` or `SetActiveConnection` fails with 3704. What it is made with
/// outlives it.
class SqliteCatalog : public DatabaseCatalog {
 public:
  SqliteCatalog(Files& files, const Locale& locale, LockPatience& patience)
      : files_(files), locale_(locale), patience_(patience) {}

  /// Others that open or make the file wait until it is kept, or this catalog goes. It is made in
  /// memory: a process that ends before `Keep` leaves nothing.
  void Create(const std::string& connection_string) override;
  /// Fails with -2147467259 when there is such a file by now, or it cannot be written.
  void Keep() override;
  void SetActiveConnection(Connection& connection) override;
  void SetStore(std::shared_ptr<SqliteStore> store) { store_ = std::move(store); }
  /// In the order of their making.
  std::vector<std::string> TableNames() const override;
  int32_t ColumnCount(const std::string& table) const override;
  void AppendTable(const TableDefinition& table) override;
  void AppendColumn(const std::string& table, const ColumnDefinition& column) override;
  void AppendIndex(const std::string& table, const IndexDefinition& index) override;

 private:
  SqliteStore& Store() const;
  void RefuseExisting() const;

  Files& files_;
  const Locale& locale_;
  LockPatience& patience_;
  std::string path_;  ///< of the file that is being made
  FolderLock making_;
  std::shared_ptr<SqliteStore> store_;
};

}  // namespace vok
