// A connection to a settings database.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/database.h"
#include "providers/database/sqlite/store.h"

namespace vok {

class SqliteConnection : public Connection {
 public:
  explicit SqliteConnection(std::shared_ptr<SqliteStore> store) : store_(std::move(store)) {}
  /// Closes the store, also for tables and structures that are still there.
  ~SqliteConnection() override { store_->Close(); }

  std::unique_ptr<Rows> Query(const std::string& statement) override;
  std::unique_ptr<WritableTable> OpenTable(const std::string& name) override;
  void Execute(const std::string& statement) override;
  std::unique_ptr<DatabaseStructure> OpenStructure() override;

  /// One transaction, for either purpose, that keeps every other writer out from its beginning.
  void Begin(Purpose purpose) override;
  void Commit() override;
  void Rollback() noexcept override { store_->RollBack(); }

 private:
  std::shared_ptr<SqliteStore> store_;
};

}  // namespace vok
