// A connection to a settings database.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/database.h"
#include "providers/database/sqlite/store.h"

namespace vok {

/// The store that answers for a genuine Jet database; takes the system's path. Empty where there is
/// nothing to read those with.
using OpenJetFile = std::function<std::shared_ptr<SqliteStore>(const std::string& path)>;

/// What it is made with outlives it.
class SqliteConnection : public Connection {
 public:
  SqliteConnection(Files& files, const Locale& locale, LockPatience& patience,
                   OpenJetFile open_jet_file = {})
      : files_(files),
        locale_(locale),
        patience_(patience),
        open_jet_file_(std::move(open_jet_file)) {}
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
  std::shared_ptr<SqliteStore> OpenStore(const std::string& path) const;

  Files& files_;
  const Locale& locale_;
  LockPatience& patience_;
  const OpenJetFile open_jet_file_;
  std::string text_;
  int32_t timeout_ = 30;  // seconds, the platform's default
  std::shared_ptr<SqliteStore> store_;
};

/// The store behind a connection, which must be this provider's own.
std::shared_ptr<SqliteStore> StoreOf(Connection& connection);

}  // namespace vok
