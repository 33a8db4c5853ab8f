// Making folders, and the roots of their paths.
#pragma once

#include <optional>
#include <string>

#include "platform/host.h"
#include "platform/locale.h"

namespace vok {

/// The drive ("c:\") or share ("\\server\share\") at the head of a path, in lower case; nothing
/// when the path begins with neither. A single character is taken for a drive's letter.
std::optional<std::string> GetPathRoot(const Locale& locale, const std::string& path);

/// Makes a folder and every missing folder above it, from the path's root down. Both "\" and "/"
/// part the names; a path without a root begins at the current directory. Failures are those of
/// `Files::CreateDirectory`; folders made before one stay.
void MakeDirectories(const Host& host, const std::string& path);

}  // namespace vok
