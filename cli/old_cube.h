// The cube file that a new one is to take the place of.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "platform/files.h"
#include "providers/cube/olap/build/build_cube.h"

namespace vok::cli {

class OldCube {
 public:
  /// Looks at the file, if there is one. Failure 58 for a file that is neither a cube's nor empty:
  /// a mistyped name must not cost another file.
  OldCube(const Files& files, const std::string& path);

  /// Failure 58 when a cube that has facts here has none in the new file.
  void RefuseEmptied(const olap::BuildReport& made) const;

 private:
  std::string path_;
  std::map<std::string, uint64_t> facts_;  ///< of each cube; none of a damaged file
};

}  // namespace vok::cli
