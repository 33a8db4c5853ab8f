#include "providers/cube/adomd/adomd_connection.h"

#include "platform/failure.h"
#include "providers/cube/adomd/schema_rows.h"

namespace vok::windows {

std::string AdomdConnection::ConnectionString() const {
  return connection_.Read(L"ConnectionString").ToText();
}

void AdomdConnection::SetConnectionString(const std::string& text) {
  connection_.Put(L"ConnectionString", text);
}

void AdomdConnection::SetCursorLocation(CursorLocation location) {
  connection_.Put(L"CursorLocation", static_cast<int32_t>(location));
}

void AdomdConnection::Open(const std::string& connection_string, const std::string& user,
                           const std::string& password, int32_t options) {
  connection_.Call(L"Open", connection_string, user, password, options);
}

void AdomdConnection::Close() { connection_.Call(L"Close"); }

std::string AdomdConnection::DefaultDatabase() const {
  return connection_.Read(L"DefaultDatabase").ToText();
}

std::vector<std::string> AdomdConnection::CatalogNames() const {
  std::vector<std::string> names;
  for (auto& row : SchemaRows(connection_, kCatalogsSchema, {}, {"CATALOG_NAME"})) {
    names.push_back(std::move(row[0]));
  }
  return names;
}

const AdomdConnection& AdomdConnection::From(const CubeConnection& connection) {
  const auto* own = dynamic_cast<const AdomdConnection*>(&connection);
  if (own == nullptr) {
    throw Failure(failure_number::kObjectClosed,
                  "The connection is none of the platform's data objects.");
  }
  return *own;
}

}  // namespace vok::windows
