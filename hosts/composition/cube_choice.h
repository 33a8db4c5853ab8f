// Who opens a cube: the embedded engine or the platform's cube provider.
//
// A file that begins as our own cube files do is the embedded engine's, even where others are
// installed. Anything else, a server's address too, goes to MSOLAP where this process can load it.
// Without it the portable providers answer: for a server's address and for a file that is not
// there. A file of another program is then failure 3706, which says what was looked for.
#pragma once

#include <memory>
#include <string>

#include "platform/cube.h"
#include "platform/files.h"

namespace vok::windows {

class CubeChoice : public CubeProvider {
 public:
  /// All outlive the choice.
  CubeChoice(const Files& files, CubeProvider& portable, CubeProvider& platform)
      : files_(files), portable_(portable), platform_(platform) {}

  /// Failures: 3706 as above, those of a text that is not a connection text, and those of the
  /// provider that is chosen.
  std::unique_ptr<CubeConnection> Connect(const std::string& text, const QueryStop* stop) override {
    return For(text).Connect(text, stop);
  }

 private:
  CubeProvider& For(const std::string& connection_text) const;

  const Files& files_;
  CubeProvider& portable_;
  CubeProvider& platform_;
};

}  // namespace vok::windows
