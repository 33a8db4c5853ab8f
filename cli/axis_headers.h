// What a person reads at the positions of an axis: captions, and more where captions alone would
// make two different members look the same.
#pragma once

#include <string>
#include <vector>

#include "platform/cube.h"

namespace vok::cli {

/// The headers of one hierarchy of an axis. A caption that several members of the column share gets
/// the names above it, "2009 / 1", and where even that is shared the member's own name after it,
/// "Smith (17)".
struct HeaderColumn {
  std::string hierarchy;           ///< "ActX.xlFile"; "" where no position tells it
  std::vector<std::string> texts;  ///< by position
};

/// One column per member of a position.
std::vector<HeaderColumn> AxisHeaders(const Cellset& cellset, std::size_t axis);

}  // namespace vok::cli
