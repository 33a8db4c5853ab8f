#include "providers/database/ado/ado_database.h"

#include "providers/database/ado/ado_connection.h"
#include "providers/database/ado/ado_recordset.h"
#include "providers/database/ado/adox_catalog.h"

namespace vok::windows {
namespace {

class AdoCommand : public Command {
 public:
  AdoCommand() : command_(Object::Create("ADODB.Command")) {}
  void SetActiveConnection(Connection& connection) override {
    command_.PutObject(L"ActiveConnection", AdoConnection::ObjectOf(connection));
  }
  void SetCommandText(const std::string& text) override { command_.Put(L"CommandText", text); }
  void Execute(int32_t options) override {
    command_.Call(L"Execute", LeftOut(), LeftOut(), options);
  }

 private:
  Object command_;
};

}  // namespace

std::unique_ptr<Connection> AdoDatabase::NewConnection() {
  return std::make_unique<AdoConnection>();
}

std::unique_ptr<Recordset> AdoDatabase::NewRecordset() { return std::make_unique<AdoRecordset>(); }

std::unique_ptr<Command> AdoDatabase::NewCommand() { return std::make_unique<AdoCommand>(); }

std::unique_ptr<DatabaseCatalog> AdoDatabase::NewCatalog() {
  return std::make_unique<AdoxCatalog>();
}

}  // namespace vok::windows
