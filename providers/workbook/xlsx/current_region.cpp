#include "providers/workbook/xlsx/current_region.h"

#include <algorithm>

namespace vok::xlsx {

void CurrentRegion::Add(std::size_t row, std::size_t column, const BlockCell* cells,
                        std::size_t count) {
  if (ended_ && row > 1) return;
  const BlockCell* first =
      std::find_if(cells, cells + count, [](const BlockCell& cell) { return !cell.IsBlank(); });
  const bool touches = first != cells + count &&
                       column + static_cast<std::size_t>(first - cells) <= right_ + 1 &&
                       row == bottom_ + 1;
  if (row > 1 && !touches) {
    ended_ = true;
    return;
  }
  bottom_ = std::max(bottom_, row);
  filled_.resize(std::max(filled_.size(), column + count + 1));
  for (std::size_t i = 0; i < count; ++i) {
    if (!cells[i].IsBlank()) filled_[column + i] = true;
  }
  while (right_ + 1 < filled_.size() && filled_[right_ + 1]) ++right_;
}

}  // namespace vok::xlsx
