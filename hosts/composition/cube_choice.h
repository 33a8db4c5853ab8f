// Who opens a cube: the embedded engine or the platform's cube provider.
//
// A file that begins as our own cube files do is the embedded engine's, whatever else is installed.
// Anything else, a server's address too, goes to MSOLAP where this process can load it. Without it
// the portable services answer: for a server's address and for a file that is not there. A file of
// another program is then failure 3706, which says what was looked for.
#pragma once

#include <string>

#include "platform/cube.h"
#include "platform/files.h"

namespace vok::windows {

class CubeChoice {
 public:
  /// All outlive the choice.
  CubeChoice(const Files& files, CubeServices& portable, CubeServices& platform)
      : files_(files), portable_(portable), platform_(platform) {}

  /// Failures: 3706 as above, and those of a connection text that is none.
  CubeServices& For(const std::string& connection_text) const;

 private:
  const Files& files_;
  CubeServices& portable_;
  CubeServices& platform_;
};

}  // namespace vok::windows
