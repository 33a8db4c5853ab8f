// Texts on a terminal: on one line, and as wide as it draws them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vok::cli {

/// Characters that would move the cursor, end the line or turn its direction are written out: "\t",
/// "\n", "\r", else "\u001b".
std::string OneLine(std::string_view text);

/// Cells of the terminal that the text takes: none for marks that stand on the letter before
/// (Hebrew points, accents), two for wide letters and pictures.
std::size_t CellWidth(std::string_view text);

}  // namespace vok::cli
