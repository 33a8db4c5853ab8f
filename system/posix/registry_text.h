// The standard text form of registry contents.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace vok {

struct RegistryValue {
  uint32_t type = 0;  ///< as the registry numbers them; 1 is a string
  std::string bytes;  ///< a string with its closing NUL; of other types what the text gives
};

/// Values by name, the default value under "".
using RegistryValues = std::map<std::string, RegistryValue>;
/// Keys by their full name, beginning with a root such as "HKEY_CURRENT_USER". Names of keys and
/// values are case folded by the caller.
using RegistryKeys = std::map<std::string, RegistryValues>;

inline constexpr std::size_t kLargestRegistryText = std::size_t{16} << 20;  // bytes
inline constexpr std::size_t kMostRegistryValues = 100'000;

class Locale;

/// Reads a text that begins with "Windows Registry Editor Version 5.00" or "REGEDIT4", in UTF-8 or,
/// with its byte order mark, UTF-16LE. Strings, "dword:", "hex:" and "hex(n):" values, continued
/// lines, comments and deletions ("[-key]", "name"=-) are understood; a line that is not one of
/// these is passed over. Version 5 has the bytes of a string in UTF-16LE. Fails with 57 for a text
/// without that beginning or beyond the limits; `name` is for the failure's text.
RegistryKeys ReadRegistryText(const Locale& locale, std::string_view bytes,
                              const std::string& name);

}  // namespace vok
