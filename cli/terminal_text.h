// How wide a terminal draws texts.
#pragma once

#include <cstddef>
#include <string_view>

namespace vok::cli {

/// Cells of the terminal that the text takes: none for marks that stand on the letter before
/// (Hebrew points, accents), two for wide letters and pictures.
std::size_t CellWidth(std::string_view text);

}  // namespace vok::cli
