// The parts of a connection text, of any kind.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vok {

/// Keywords in ASCII lower case, with their values, as they stand in the text.
using ConnectionParts = std::vector<std::pair<std::string, std::string>>;

/// Splits "Keyword=value" parts with ";" between. Blanks around keywords and values and empty parts
/// count for nothing; a value may stand in single or double quotes, doubled inside. Failure
/// -2147467259 for a part without a keyword or "=", a quote without end, text after a quote.
ConnectionParts SplitConnectionText(std::string_view text);

/// Failure -2147467259: the text is not understood, and why.
[[noreturn]] void ThrowBadConnectionText(std::string_view text, const std::string& why);

}  // namespace vok
