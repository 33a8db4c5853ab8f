#include "hosts/windows/ado/ado_connection.h"

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

const Object& AdoConnection::ObjectOf(const Connection& connection) {
  const auto* own = dynamic_cast<const AdoConnection*>(&connection);
  if (own == nullptr) {
    throw Failure(failure_number::kObjectClosed,
                  "The connection is none of the platform's data objects.");
  }
  return own->object();
}

}  // namespace vok::windows
