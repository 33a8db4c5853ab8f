#include "providers/database/ado/ado_database.h"

#include <algorithm>
#include <utility>

#include "platform/text.h"
#include "providers/database/ado/ado_connection.h"
#include "providers/database/ado/adox_structure.h"
#include "system/automation/object.h"

namespace vok::windows {
namespace {

std::string ProviderText() { return "Provider=" + FindSettingsProvider() + ";"; }

/// A path that would not be one value of a connection text is put in quotes.
std::string SourceText(const std::string& path) {
  const bool plain = path.find(';') == std::string::npos && TrimBlanks(path) == path;
  return "Data Source=" + (plain ? path : '"' + path + '"');
}

/// Each step is written as it is made.
class AdoxNewDatabase : public NewDatabase {
 public:
  explicit AdoxNewDatabase(const std::string& connection_string) {
    structure_.Create(connection_string);
  }
  DatabaseStructure& Structure() override { return structure_; }
  void Keep() override {}

 private:
  AdoxStructure structure_;
};

}  // namespace

const std::vector<std::string>& SettingsProviders() {
  static const std::vector<std::string> names{"Microsoft.Jet.OLEDB.4.0", "Microsoft.ACE.OLEDB.16.0",
                                              "Microsoft.ACE.OLEDB.15.0",
                                              "Microsoft.ACE.OLEDB.12.0"};
  return names;
}

std::string FindSettingsProvider() {
  const auto& names = SettingsProviders();
  const auto found = std::find_if(names.begin(), names.end(), HasInProcessServer);
  return found == names.end() ? std::string() : *found;
}

std::string ProcessWidth() { return sizeof(void*) == 8 ? "64-bit" : "32-bit"; }

std::unique_ptr<Connection> AdoDatabase::Open(const std::string& path, int32_t timeout) {
  return std::make_unique<AdoConnection>(ProviderText() + SourceText(path), timeout);
}

std::unique_ptr<DatabaseStructure> AdoDatabase::OpenStructure(const std::string& path) {
  const Object connection = Object::Create("ADODB.Connection");
  // With two semicolons, as the platform's programs write it.
  connection.Call(L"Open", ProviderText() + ";" + SourceText(path), "", "", -1);
  return std::make_unique<AdoxStructure>(connection);
}

std::unique_ptr<NewDatabase> AdoDatabase::Create(const std::string& path) {
  return std::make_unique<AdoxNewDatabase>(
      ProviderText() + SourceText(path) + ";Jet OLEDB:Database Password=;Jet OLEDB:Engine Type=5;");
}

}  // namespace vok::windows
