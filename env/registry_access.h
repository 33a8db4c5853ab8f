// String values of the registry, and the names of the keys that were opened.
//
// Nothing here fails with an exception: a key or value that cannot be read is absent.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/registry.h"

namespace vok {

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

}  // namespace vok
