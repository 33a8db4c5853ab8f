// Where the component keeps its files, and the values of the registry and the ini file.
//
// Nothing here fails: what cannot be read is the empty text. Whether the settings folder exists and
// holds the database is for the caller to test.
#pragma once

#include <string>

#include "env/registry_access.h"
#include "platform/host.h"

namespace vok {

/// Process-wide, one per process, handed around by reference.
struct Environment {
  std::string SettingsFolder;   ///< as the last `FindSettingsFolder` left it; no closing "\"
  std::string RegistryProblem;  ///< why it could not ask the registry; "" when it could
  OpenKeyTable open_keys;
};

/// A string value of the current user's key "Software\Vok\Varnel 17".
std::string GetSettingValue(const Host& host, Environment& environment, const std::string& name);

/// Sets `SettingsFolder` to the registry's "MDBPath", else to the component's own folder. True when
/// the registry names it. A registry that cannot be read names none: a message box says so, once
/// for each reason.
bool FindSettingsFolder(const Host& host, Environment& environment);

/// A value of "Qel.ini" in the settings folder, at most 254 characters. Finds the settings folder
/// first.
std::string ReadIniValue(const Host& host, Environment& environment, const std::string& section,
                         const std::string& key);

/// Makes the settings folder the current directory and returns it; "" when there is no such
/// directory, and then nothing changes.
std::string GoToSettingsFolder(const Host& host, const Environment& environment);

/// Path of the settings database in a settings folder.
std::string SettingsDatabase(const std::string& folder);

}  // namespace vok
