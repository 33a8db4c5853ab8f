// A connection of the platform's data objects.
#pragma once

#include "platform/database.h"
#include "system/automation/object.h"

namespace vok::windows {

class AdoConnection : public Connection {
 public:
  AdoConnection() : connection_(Object::Create("ADODB.Connection")) {}
  std::string ConnectionString() const override;
  void SetConnectionString(const std::string& text) override;
  void SetCursorLocation(CursorLocation location) override;
  void SetCommandTimeout(int32_t seconds) override;
  void Open(const std::string& connection_string, const std::string& user,
            const std::string& password, int32_t options) override;
  void Close() override;
  void BeginSave() override {}
  void BeginChange() override;
  void CommitSave() override;
  void RollbackSave() noexcept override;

  const Object& object() const { return connection_; }
  /// The connection behind the port's; failure 3704 for one that is none of these.
  static const Object& ObjectOf(const Connection& connection);

 private:
  Object connection_;
  bool in_transaction_ = false;
};

}  // namespace vok::windows
