#include "providers/database/ado/ado_connection.h"

#include "platform/failure.h"

namespace vok::windows {

std::string AdoConnection::ConnectionString() const {
  return connection_.Read(L"ConnectionString").ToText();
}

void AdoConnection::SetConnectionString(const std::string& text) {
  connection_.Put(L"ConnectionString", text);
}

void AdoConnection::SetCursorLocation(CursorLocation location) {
  connection_.Put(L"CursorLocation", static_cast<int32_t>(location));
}

void AdoConnection::SetCommandTimeout(int32_t seconds) {
  connection_.Put(L"CommandTimeout", seconds);
}

void AdoConnection::Open(const std::string& connection_string, const std::string& user,
                         const std::string& password, int32_t options) {
  connection_.Call(L"Open", connection_string, user, password, options);
}

void AdoConnection::Close() { connection_.Call(L"Close"); }

void AdoConnection::BeginChange() {
  connection_.Call(L"BeginTrans");
  in_transaction_ = true;
}

void AdoConnection::CommitSave() {
  if (!in_transaction_) return;
  connection_.Call(L"CommitTrans");
  in_transaction_ = false;
}

void AdoConnection::RollbackSave() noexcept {
  if (!in_transaction_) return;
  in_transaction_ = false;
  try {
    connection_.Call(L"RollbackTrans");
  } catch (const Failure&) {
    // The failure that ended the change is the one to tell; the provider takes the rest back.
  }
}

const Object& AdoConnection::ObjectOf(const Connection& connection) {
  const auto* own = dynamic_cast<const AdoConnection*>(&connection);
  if (own == nullptr) {
    throw Failure(failure_number::kObjectClosed,
                  "The connection is none of the platform's data objects.");
  }
  return own->object();
}

}  // namespace vok::windows
