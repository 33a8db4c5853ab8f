// The structure of a settings database, and the making of a new one.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/database.h"
#include "providers/database/sqlite/folder_lock.h"
#include "providers/database/sqlite/store.h"

namespace vok {

class SqliteStructure : public DatabaseStructure {
 public:
  explicit SqliteStructure(std::shared_ptr<SqliteStore> store) : store_(std::move(store)) {}

  /// In the order of their making.
  std::vector<std::string> TableNames() const override;
  int32_t ColumnCount(const std::string& table) const override;
  void AppendTable(const TableDefinition& table) override;
  void AppendColumn(const std::string& table, const ColumnDefinition& column) override;
  void AppendIndex(const std::string& table, const IndexDefinition& index) override;

 private:
  std::shared_ptr<SqliteStore> store_;
};

/// Others that open or make the file wait until it is kept, or this object goes. It is made in
/// memory: a process that ends before `Keep` leaves nothing.
class SqliteNewDatabase : public NewDatabase {
 public:
  /// Fails with -2147467259 when there is such a file. `files`, `locale` and `patience` outlive it.
  SqliteNewDatabase(Files& files, const Locale& locale, LockPatience& patience, std::string path);
  DatabaseStructure& Structure() override { return structure_; }
  /// Fails with -2147467259 when there is such a file by now, or it cannot be written.
  void Keep() override;

 private:
  void RefuseExisting() const;

  Files& files_;
  std::string path_;
  FolderLock making_;
  std::shared_ptr<SqliteStore> store_;
  SqliteStructure structure_;
};

}  // namespace vok
