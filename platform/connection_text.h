// Connection texts: the parts of any, and what a cube's asks for.
#pragma once

#include <cstddef>
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

namespace vok::cube_text {

struct ConnectionText {
  std::string provider;
  std::string data_source;
  std::string initial_catalog;  ///< without the brackets around it
  std::size_t max_cells = 0;    ///< "Max Cells"; 0: not given
  std::size_t max_memory = 0;   ///< "Max Memory", in MB; 0: not given
  double timeout_seconds = 0;   ///< "Timeout"; 0: not given
};

/// Parts in any order, keywords without regard to case; other keywords are passed over. Failure
/// -2147467259: those of `SplitConnectionText`, and a limit that is not a number above 0.
ConnectionText ParseConnectionText(std::string_view text);

/// Whether the data source is the address of a server (http or https), and not a file.
bool NamesServer(const ConnectionText& text);

}  // namespace vok::cube_text
