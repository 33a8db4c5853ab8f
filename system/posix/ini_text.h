// Values of ini files, as the platform's private-profile call reads them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/locale.h"

namespace vok {

inline constexpr std::size_t kLargestIniText = std::size_t{1} << 20;  // bytes; the rest is not read

/// The value of the first such key in the first such section; "" when there is none. Names without
/// regard to case; blanks around names and values, one pair of quotes around a value and lines that
/// begin with ";" do not count. `bytes` are UTF-8, or UTF-16LE with its byte order mark.
std::string IniValue(const Locale& locale, std::string_view bytes, const std::string& section,
                     const std::string& key);

}  // namespace vok
