// The root of a path: its drive or its network share.
#pragma once

#include <optional>
#include <string>

#include "platform/locale.h"

namespace vok {

/// The drive ("c:\") or share ("\\server\share\") at the head of a path, in lower case; nothing
/// when the path begins with neither. A single character is taken for a drive's letter.
std::optional<std::string> GetPathRoot(const Locale& locale, const std::string& path);

}  // namespace vok
