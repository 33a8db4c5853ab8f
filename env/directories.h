// Making folders.
#pragma once

#include <string>

#include "platform/host.h"

namespace vok {

/// Makes a folder and every missing folder above it, from the path's root down. Both "\" and "/"
/// part the names; a path without a root begins at the current directory. Failures are those of
/// `Files::CreateDirectory`; folders made before one stay.
void MakeDirectories(const Host& host, const std::string& path);

}  // namespace vok
