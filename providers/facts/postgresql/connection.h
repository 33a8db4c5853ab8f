// One connection to a PostgreSQL server. No wait for it outlasts its limits or the user's patience.
#pragma once

#include <libpq-fe.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "platform/query_stop.h"
#include "platform/server_settings.h"
#include "providers/facts/postgresql/address.h"

namespace vok::postgresql {

/// What the server said against a statement.
class Refusal : public Failure {
 public:
  Refusal(const std::string& text, std::string state)
      : Failure(failure_number::kUnspecified, text), state_(std::move(state)) {}
  const std::string& state() const { return state_; }  ///< "42P01": no such table

 private:
  std::string state_;
};

/// Used by one thread at a time. Failures: -2147467259 with the server's own words (`Refusal` where
/// it still answers), -2147217871 for the limits of time of the settings, `kQueryCancelled`.
class Connection {
 public:
  Connection(Address address, const ServerSettings& settings, const QueryStop& stop);

  const std::string& address() const { return address_.shown; }
  const std::string& AddressToKeep() const { return address_.kept; }

  /// Called now and then during each wait; what it throws ends the wait and what the server does.
  /// nullptr: nothing. Outlives the waits.
  void Watch(const std::function<void()>* check) { check_ = check; }

  /// The rows of the last of the statements, NULL as "".
  std::vector<std::vector<std::string>> Ask(const std::string& statements);

  /// Begins to read what a COPY to standard output gives.
  void BeginCopy(const std::string& statement);
  /// Appends the next row, with its line end; false after the last.
  bool AppendRow(std::string& rows);
  /// Ends what the server does for us. The connection is of no more use.
  void Abandon();

 private:
  using Handle = std::unique_ptr<PGconn, void (*)(PGconn*)>;
  using Result = std::unique_ptr<PGresult, void (*)(PGresult*)>;
  using Clock = std::chrono::steady_clock;

  void Connect();
  void Send(const std::string& statements);
  /// Null after the last.
  Result NextResult();
  /// Until there is something to read, or room to write.
  void Wait(short events);
  void WaitForBytes();
  /// Ends the wait where the caller wants it so.
  void CheckCaller();
  void CheckLimits(Clock::time_point since, int seconds, const char* key, const std::string& what);

  Failure Broken() const;
  Refusal Refused(const PGresult* result) const;

  Address address_;
  const ServerSettings settings_;
  const QueryStop& stop_;
  const std::function<void()>* check_ = nullptr;
  Handle handle_{nullptr, PQfinish};
  Clock::time_point asked_;  // the statement that is under way
};

}  // namespace vok::postgresql
