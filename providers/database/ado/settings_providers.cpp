#include "providers/database/ado/settings_providers.h"

#include <algorithm>

#include "system/automation/object.h"

namespace vok::windows {

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

}  // namespace vok::windows
