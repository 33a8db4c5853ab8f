// Unique names as cube providers write them: [Dimension].[Hierarchy].[a]]b].
#pragma once

#include <string>
#include <string_view>

namespace vok::cube_text {

/// The last part of the name without its brackets, "]]" made "]". Nothing can be told from a part
/// that is a key (&[17]): the result is then `otherwise`, as it is for a name without brackets.
std::string LastPart(std::string_view unique_name, std::string_view otherwise);

}  // namespace vok::cube_text
