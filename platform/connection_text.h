// What a cube's connection text asks for.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

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
