// The one way to the settings database: a connection, a statement, and record sets of it.
//
// An `objRs` owns its connection; record sets belong to the caller. Those of `GetRs` and
// `GetrsOlap` need the connection and must go first, those of `GetRsReadOnly` outlive it. Failures
// of the data provider pass through unchanged.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/database.h"

namespace vok {

class objRs {
 public:
  explicit objRs(Database& database) : database_(database) {}

  /// The statement, or bare table name, to open or execute next.
  std::string SQL;

  /// Opens `SQL` as an updatable record set. Without a connection all three that open record sets
  /// fail with -2147221406 "No valid Connection".
  std::unique_ptr<Recordset> GetRs();
  /// Time-out in seconds.
  void ADOConnect(const std::string& connection_string, int16_t timeout);
  /// Opens `SQL` as a counted snapshot, detached from the connection.
  std::unique_ptr<Recordset> GetRsReadOnly();
  /// Executes `SQL`; without a connection it fails likewise.
  void RunCommand();
  /// As `GetRs`; the new record set is kept in the argument.
  Recordset& GetrsOlap(std::unique_ptr<Recordset>& record_set);

  /// The connection, for grouping statements; fails as `GetRs` does when there is none.
  Connection& OpenedConnection() const;

 private:
  std::unique_ptr<Recordset> OpenRecordset(CursorType cursor, LockType lock) const;

  Database& database_;
  std::unique_ptr<Connection> connection_;
};

}  // namespace vok
