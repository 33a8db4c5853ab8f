// Paths held against other runs.
#pragma once

#include <memory>
#include <string>

#include "platform/files.h"

namespace vok::windows {

/// Claims a native path on this machine, by whichever spelling it is named. Held by a name of the
/// kernel's, not by a file: nothing is left behind, however the process ends. Failure 70 when
/// another claim holds the path.
std::unique_ptr<PathClaim> ClaimPath(const std::string& path);

}  // namespace vok::windows
