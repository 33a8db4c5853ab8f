#include "providers/facts/postgresql/connection.h"

#include <poll.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/shown_text.h"

namespace vok::postgresql {
namespace {

constexpr int kLookEvery = 200;  // milliseconds, for the wish to stop

/// On one line, without the library's line ends.
std::string Words(const char* text) {
  std::string words = text == nullptr ? "" : text;
  while (!words.empty() && (words.back() == '\n' || words.back() == '.')) words.pop_back();
  for (std::size_t at = words.find('\n'); at != words.npos; at = words.find('\n', at)) {
    words.replace(at, 1, "; ");
  }
  return words.empty() ? "out of memory" : OneLine(words);
}

/// Message, detail and hint of the server; the library's own words where it said nothing.
std::string WordsOf(const PGresult* result) {
  std::string words;
  constexpr std::array<unsigned char, 3> kFields = {PG_DIAG_MESSAGE_PRIMARY, PG_DIAG_MESSAGE_DETAIL,
                                                    PG_DIAG_MESSAGE_HINT};
  for (const unsigned char field : kFields) {
    const char* text = PQresultErrorField(result, field);
    if (text != nullptr) words += (words.empty() ? "" : ". ") + Words(text);
  }
  return words.empty() ? Words(PQresultErrorMessage(result)) : words;
}

}  // namespace

Connection::Connection(Address address, const ServerSettings& settings, const QueryStop& stop)
    : address_(std::move(address)), settings_(settings), stop_(stop) {
  std::vector<const char*> keys;
  std::vector<const char*> values;
  for (const auto& [key, value] : address_.parameters) {
    keys.push_back(key.c_str());
    values.push_back(value.c_str());
  }
  keys.push_back(nullptr);
  values.push_back(nullptr);
  handle_.reset(PQconnectStartParams(keys.data(), values.data(), 0));
  Connect();
}

void Connection::Connect() {
  PGconn* connection = handle_.get();
  if (connection == nullptr) throw std::bad_alloc();
  asked_ = Clock::now();
  auto state =
      PQstatus(connection) == CONNECTION_BAD ? PGRES_POLLING_FAILED : PGRES_POLLING_WRITING;
  while (state != PGRES_POLLING_OK) {
    if (state == PGRES_POLLING_FAILED) throw Broken();
    Wait(state == PGRES_POLLING_READING ? POLLIN : POLLOUT);
    state = PQconnectPoll(connection);
  }
}

std::vector<std::vector<std::string>> Connection::Ask(const std::string& statements) {
  Send(statements);
  std::vector<std::vector<std::string>> rows;
  while (const Result result = NextResult()) {
    rows.clear();
    for (int row = 0; row < PQntuples(result.get()); ++row) {
      auto& fields = rows.emplace_back();
      for (int column = 0; column < PQnfields(result.get()); ++column) {
        fields.emplace_back(PQgetvalue(result.get(), row, column));
      }
    }
  }
  return rows;
}

void Connection::BeginCopy(const std::string& statement) {
  Send(statement);
  const Result result = NextResult();
  if (PQresultStatus(result.get()) != PGRES_COPY_OUT) throw Refused(result.get());
}

bool Connection::AppendRow(std::string& rows) {
  for (;;) {
    char* row = nullptr;
    const int length = PQgetCopyData(handle_.get(), &row, 1);
    const std::unique_ptr<char, void (*)(void*)> freed(row, PQfreemem);
    if (length > 0) {
      rows.append(row, static_cast<std::size_t>(length));
      return true;
    }
    if (length == -2) throw Broken();
    if (length == 0) {
      WaitForBytes();
      continue;
    }
    while (NextResult()) {  // how it ended
    }
    return false;
  }
}

void Connection::Abandon() {
  const std::unique_ptr<PGcancel, void (*)(PGcancel*)> cancel(PQgetCancel(handle_.get()),
                                                              PQfreeCancel);
  std::array<char, 256> words{};
  if (cancel) PQcancel(cancel.get(), words.data(), static_cast<int>(words.size()));
  handle_.reset();
}

void Connection::Send(const std::string& statements) {
  asked_ = Clock::now();
  if (PQsendQuery(handle_.get(), statements.c_str()) == 0) throw Broken();
}

Connection::Result Connection::NextResult() {
  while (PQisBusy(handle_.get()) != 0) WaitForBytes();
  Result result(PQgetResult(handle_.get()), PQclear);
  const auto status = PQresultStatus(result.get());
  if (!result || status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK ||
      status == PGRES_COPY_OUT) {
    return result;
  }
  if (PQstatus(handle_.get()) == CONNECTION_BAD) throw Broken();
  while (Result(PQgetResult(handle_.get()), PQclear)) {
  }
  throw Refused(result.get());
}

void Connection::WaitForBytes() {
  Wait(POLLIN);
  if (PQconsumeInput(handle_.get()) == 0) throw Broken();
}

void Connection::Wait(short events) {
  const bool connects = PQstatus(handle_.get()) != CONNECTION_OK;
  const auto since = Clock::now();
  for (;;) {
    CheckCaller();
    pollfd socket{PQsocket(handle_.get()), events, 0};
    const int ready = ::poll(&socket, 1, kLookEvery);
    if (ready > 0) return;
    if (ready < 0 && errno != EINTR) throw Broken();
    if (connects) {
      CheckLimits(asked_, settings_.connect_seconds, "ConnectSeconds", "took no connection within");
    } else {
      CheckLimits(since, settings_.idle_seconds, "IdleSeconds", "sent nothing for");
      CheckLimits(asked_, settings_.total_seconds, "TotalSeconds", "did not finish within");
    }
  }
}

void Connection::CheckCaller() {
  if (stop_.asked()) {
    Abandon();
    throw Failure(kQueryCancelled, "The question to " + address() + " was stopped.");
  }
  if (check_ == nullptr || !*check_) return;
  try {
    (*check_)();
  } catch (...) {
    Abandon();
    throw;
  }
}

void Connection::CheckLimits(Clock::time_point since, int seconds, const char* key,
                             const std::string& what) {
  if (seconds == 0 || Clock::now() - since < std::chrono::seconds(seconds)) return;
  Abandon();
  throw Failure(failure_number::kTimeout, address() + ": the server " + what + " " +
                                              std::to_string(seconds) + " seconds (" + key +
                                              " in Qel.ini, section [Database])");
}

Failure Connection::Broken() const {
  const PGconn* connection = handle_.get();
  std::string text = address() + ": " + Words(PQerrorMessage(connection));
  if (!address_.no_login.empty()) {
    text += ". The user and password that are set were not sent to it: " + address_.no_login;
  } else if (PQconnectionNeedsPassword(connection) != 0 ||
             (PQstatus(connection) == CONNECTION_BAD &&
              PQconnectionUsedPassword(connection) != 0)) {
    text +=
        ". Set User, Password and Server in Qel.ini, section [Database], or name a file of "
        "passwords in PGPASSFILE";
  } else if (text.find("does not support SSL") != text.npos) {
    text += ". A server on another machine is reached through TLS alone: switch it on there";
  } else if (text.find("certificate") != text.npos) {
    text +=
        ". Name the authority of the server's certificate as CaFile in Qel.ini, section "
        "[Database]; the certificate must be for the name in the address";
  }
  return {failure_number::kUnspecified, text};
}

Refusal Connection::Refused(const PGresult* result) const {
  const char* state = PQresultErrorField(result, PG_DIAG_SQLSTATE);
  return {address() + ": " + WordsOf(result), state == nullptr ? "" : state};
}

}  // namespace vok::postgresql
