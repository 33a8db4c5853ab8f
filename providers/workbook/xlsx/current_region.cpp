#include <algorithm>

#include "providers/workbook/xlsx/sheet.h"

namespace vok::xlsx {
namespace {

/// The block around a cell while it grows, one neighbouring row or column after the other.
class Region {
 public:
  Region(const Sheet& sheet, CellPlace start)
      : sheet_(sheet),
        top_(start.row),
        bottom_(start.row),
        left_(start.column),
        right_(start.column) {}

  std::size_t Rows() {
    while (GrowUp() || GrowDown() || GrowSideways()) {
    }
    return bottom_ - top_ + 1;
  }

 private:
  uint32_t OuterLeft() const { return std::max(left_ - 1, 1u); }
  uint32_t OuterRight() const { return std::min(right_ + 1, kMaxColumns); }

  const Row* FindRow(uint32_t number) const {
    const auto& rows = sheet_.rows();
    const auto row = std::lower_bound(rows.begin(), rows.end(), number,
                                      [](const Row& r, uint32_t n) { return r.number < n; });
    return row != rows.end() && row->number == number ? &*row : nullptr;
  }

  bool RowTouches(uint32_t number) const {
    const Row* row = FindRow(number);
    if (row == nullptr) return false;
    return std::any_of(row->cells.begin(), row->cells.end(), [this](const Cell& cell) {
      return cell.kind != CellKind::kBlank && cell.column >= OuterLeft() &&
             cell.column <= OuterRight();
    });
  }

  bool GrowUp() {
    const uint32_t before = top_;
    while (top_ > 1 && RowTouches(top_ - 1)) --top_;
    return top_ != before;
  }

  bool GrowDown() {
    const uint32_t before = bottom_;
    while (bottom_ < kMaxRows && RowTouches(bottom_ + 1)) ++bottom_;
    return bottom_ != before;
  }

  /// One pass over the rows of the block and the two that border on it; each takes the block as far
  /// to the left and right as its own cells reach without a gap.
  bool GrowSideways() {
    const CellPlace before{left_, right_};
    const auto& rows = sheet_.rows();
    auto row = std::lower_bound(rows.begin(), rows.end(), std::max(top_ - 1, 1u),
                                [](const Row& r, uint32_t n) { return r.number < n; });
    for (; row != rows.end() && row->number <= bottom_ + 1; ++row) GrowAlong(*row);
    return before != CellPlace{left_, right_};
  }

  void GrowAlong(const Row& row) {
    for (auto cell = row.cells.rbegin(); cell != row.cells.rend(); ++cell) {
      if (cell->kind != CellKind::kBlank && cell->column + 1u == left_) left_ = cell->column;
    }
    for (const Cell& cell : row.cells) {
      if (cell.kind != CellKind::kBlank && cell.column == right_ + 1) right_ = cell.column;
    }
  }

  const Sheet& sheet_;
  uint32_t top_;
  uint32_t bottom_;
  uint32_t left_;
  uint32_t right_;
};

}  // namespace

std::size_t CurrentRegionRows(const Sheet& sheet, CellPlace place) {
  return Region(sheet, place).Rows();
}

}  // namespace vok::xlsx
