#include "platform/cube.h"

namespace vok {

Value Cellset::Cell(std::size_t ordinal) const {
  double number = 0;
  CellState state = CellState::kEmpty;
  ReadCells(ordinal, 1, {&number, 1}, {&state, 1});
  switch (state) {
    case CellState::kEmpty:
      return {};
    case CellState::kNumber:
      return number;
    case CellState::kInteger:
      return static_cast<int32_t>(number);
    case CellState::kLogical:
      return number != 0;
    case CellState::kText:
      return CellText(ordinal);
    case CellState::kError:
      return CellError{CellText(ordinal)};
  }
  return {};
}

}  // namespace vok
