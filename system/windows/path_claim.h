// Paths held against other runs, for programs that write a run's file in several steps.
#pragma once

#include <memory>
#include <string>

namespace vok::windows {

/// A path held against other runs of the system, until the object or the process is gone.
class PathClaim {
 public:
  virtual ~PathClaim() = default;
};

/// Claims a native path on this machine, in any spelling of it. Held by a name of the
/// kernel's, not by a file: nothing is left, however the process ends. Failure 70 when
/// another claim holds the path.
std::unique_ptr<PathClaim> ClaimPath(const std::string& path);

}  // namespace vok::windows
