#include "platform/spreadsheet.h"

namespace vok {

Value CellBlock::ValueAt(std::size_t row, std::size_t column) const {
  const BlockCell& cell = Row(row)[column - 1];
  switch (cell.kind) {
    case BlockCell::Kind::kNumber:
      return cell.number;
    case BlockCell::Kind::kText:
      return std::string(Text(cell));
    default:
      return {};
  }
}

}  // namespace vok
