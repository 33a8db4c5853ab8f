// Case folding by the system's own tables.
#pragma once

#include <string>
#include <string_view>

namespace vok::windows {

/// Letter by letter, the same in every country; of the letters whose folded form is longer, the
/// German sharp s alone becomes "ss".
std::string FoldedCase(std::string_view text);

}  // namespace vok::windows
