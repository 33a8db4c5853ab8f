#include "settings/store.h"

#include "platform/text.h"

namespace vok {

std::string SettingsConnectionText(const Environment& environment) {
  return "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" +
         SettingsDatabase(environment.SettingsFolder);
}

objRs OpenSettings(const Host& host, const Environment& environment) {
  constexpr int16_t kTimeoutSeconds = 20;
  objRs store(host.database);
  store.ADOConnect(SettingsConnectionText(environment), kTimeoutSeconds);
  return store;
}

std::string NamedSetStatement(const std::string& statement, const std::string& name) {
  return statement + "'" + std::string(TrimBlanks(name)) + "'";
}

}  // namespace vok
