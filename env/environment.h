// Where the component keeps its files, and the values of the registry and the ini file.
//
// Nothing here fails: what cannot be read is the empty text. Whether the settings folder exists and
// holds the database is for the caller to test.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/host.h"
#include "platform/registry.h"

namespace vok {

/// The current user's key that holds the system's values.
inline constexpr char kSettingsKey[] = "Software\\Vok\\Varnel 17";

/// A key that was opened and its full name. Closing a key leaves its entry in place.
struct OpenKey {
  RegistryKey handle = 0;
  std::string name;
};

/// In the order of first opening; it only grows.
using OpenKeyTable = std::vector<OpenKey>;

/// The printable name of a handle: a predefined root's, else the one in the table, else "".
std::string KeyName(const OpenKeyTable& open_keys, RegistryKey key);

/// Opens a key below `parent` and records its full name; nothing when it cannot be opened.
std::optional<RegistryKey> RegOpenKey(Registry& registry, OpenKeyTable& open_keys,
                                      RegistryKey parent, const std::string& path);

/// A value of type REG_SZ, up to its first NUL; nothing for an absent value and for other types.
std::optional<std::string> RegQueryString(Registry& registry, RegistryKey key,
                                          const std::string& name);

/// True when the key was open and is closed.
bool RegCloseKey(Registry& registry, RegistryKey key);

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

/// The values of "Qel.ini" are this long, unless it is told otherwise.
inline constexpr uint32_t kIniValueLength = 254;

/// A value of "Qel.ini" in the settings folder, at most `length` characters. Finds the settings
/// folder first.
std::string ReadIniValue(const Host& host, Environment& environment, const std::string& section,
                         const std::string& key, uint32_t length = kIniValueLength);

/// Makes the settings folder the current directory and returns it; "" when there is no such
/// directory, and then nothing changes.
std::string GoToSettingsFolder(const Host& host, const Environment& environment);

/// Path of the settings database in a settings folder.
std::string SettingsDatabase(const std::string& folder);

}  // namespace vok
