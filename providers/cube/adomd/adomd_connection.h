// A connection to a cube through the platform's data objects.
#pragma once

#include "platform/cube.h"
#include "system/automation/object.h"

namespace vok::windows {

class AdomdConnection : public CubeConnection {
 public:
  AdomdConnection() : connection_(Object::Create("ADODB.Connection")) {}
  std::string ConnectionString() const override;
  void SetConnectionString(const std::string& text) override;
  void SetCursorLocation(CursorLocation location) override;
  void Open(const std::string& connection_string, const std::string& user,
            const std::string& password, int32_t options) override;
  void Close() override;
  std::string DefaultDatabase() const override;
  std::vector<std::string> CatalogNames() const override;

  const Object& object() const { return connection_; }
  /// The same connection as its own class; failure 3704 for one of another kind.
  static const AdomdConnection& From(const CubeConnection& connection);

 private:
  Object connection_;
};

}  // namespace vok::windows
