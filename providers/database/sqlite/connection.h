// A connection to a settings database.
#pragma once

#include <memory>
#include <string>

#include "platform/database.h"
#include "providers/database/sqlite/store.h"

namespace vok {

/// What it is made with outlives it.
class SqliteConnection : public Connection {
 public:
  SqliteConnection(Files& files, const Locale& locale, LockPatience& patience)
      : files_(files), locale_(locale), patience_(patience) {}
  ~SqliteConnection() override;

  std::string ConnectionString() const override { return text_; }
  void SetConnectionString(const std::string& text) override { text_ = text; }
  void SetCursorLocation(CursorLocation) override {}  // every record set is a client's
  void SetCommandTimeout(int32_t seconds) override;
  /// User, password and options are taken and mean nothing: a settings file has no users.
  void Open(const std::string& connection_string, const std::string& user,
            const std::string& password, int32_t options) override;
  void Close() override;

  /// One transaction that keeps every other writer out from its beginning.
  void BeginSave() override;
  void CommitSave() override;
  void RollbackSave() noexcept override;

  /// What is open; fails with 3704 when nothing is.
  std::shared_ptr<SqliteStore> Store() const;

 private:
  Files& files_;
  const Locale& locale_;
  LockPatience& patience_;
  std::string text_;
  int32_t timeout_ = 30;  // seconds, the platform's default
  std::shared_ptr<SqliteStore> store_;
};

/// The store behind a connection, which must be this provider's own.
std::shared_ptr<SqliteStore> StoreOf(Connection& connection);

}  // namespace vok
