#include "providers/cube/olap/mdx/cell_grid.h"

#include <bit>
#include <utility>

namespace vok::olap {
namespace {

Rows RowsOf(const RowBits& bits) {
  Rows rows;
  for (std::size_t word = 0; word < bits.size(); ++word) {
    for (uint64_t rest = bits[word]; rest != 0; rest &= rest - 1) {
      rows.push_back(static_cast<uint32_t>(word * kRowsOfWord) +
                     static_cast<uint32_t>(std::countr_zero(rest)));
    }
  }
  return rows;
}

}  // namespace

CellGrid::CellGrid(std::vector<std::size_t> lengths, std::size_t along)
    : lengths_(std::move(lengths)), along_(along), axes_(lengths_.size()) {
  std::size_t count = 1;
  for (std::size_t axis = 0; axis < lengths_.size(); ++axis) {
    if (axis != along_) count *= lengths_[axis];
  }
  columns_.resize(count);
}

void CellGrid::DropEmpty(const std::vector<bool>& axes) {
  std::vector<RowBits> used;
  for (const std::size_t length : lengths_) used.emplace_back(length / kRowsOfWord + 1);
  for (std::size_t index = 0; index < columns_.size(); ++index) MarkUsed(index, used);
  for (std::size_t axis = 0; axis < axes_.size(); ++axis) {
    if (!axes[axis]) continue;
    axes_[axis].kept = RowsOf(used[axis]);
    axes_[axis].keeps_all = axes_[axis].kept.size() == lengths_[axis];
  }
}

void CellGrid::MarkUsed(std::size_t index, std::vector<RowBits>& used) const {
  const PackedCells& column = columns_[index];
  if (column.empty()) return;
  for (std::size_t axis = 0; axis < lengths_.size(); ++axis) {
    if (axis == along_) {
      column.MarkFilled(used[axis]);
      continue;
    }
    const std::size_t position = index % lengths_[axis];
    used[axis][position / kRowsOfWord] |= uint64_t{1} << position % kRowsOfWord;
    index /= lengths_[axis];
  }
}

std::size_t CellGrid::KeptCount(std::size_t axis) const {
  return axes_[axis].keeps_all ? lengths_[axis] : axes_[axis].kept.size();
}

std::size_t CellGrid::size() const {
  std::size_t count = columns_.empty() && axes_.empty() ? 0 : 1;
  for (std::size_t axis = 0; axis < axes_.size(); ++axis) count *= KeptCount(axis);
  return count;
}

CellGrid::GridCell CellGrid::At(std::size_t ordinal) const {
  GridCell place;
  std::size_t stride = 1;
  for (std::size_t axis = 0; axis < axes_.size(); ++axis) {
    const std::size_t count = KeptCount(axis);
    std::size_t position = ordinal % count;
    ordinal /= count;
    if (!axes_[axis].keeps_all) position = axes_[axis].kept[position];
    if (axis == along_) {
      place.row = position;
    } else {
      place.column += position * stride;
      stride *= lengths_[axis];
    }
  }
  return place;
}

void CellGrid::Read(std::size_t first, std::size_t step, std::span<double> numbers,
                    std::span<CellState> states) const {
  std::size_t stride = 1;  // from one cell of a column to the next
  for (std::size_t axis = 0; axis < along_ && axis < axes_.size(); ++axis)
    stride *= KeptCount(axis);
  const std::size_t count = along_ < axes_.size() ? KeptCount(along_) : 1;
  const std::size_t position = first / stride % count;
  if (step == stride && position + numbers.size() <= count) {
    ReadAlong(At(first).column, position, numbers, states);
    return;
  }
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const GridCell place = At(first + i * step);
    columns_[place.column].Read([&](std::size_t) { return place.row; }, numbers.subspan(i, 1),
                                states.subspan(i, 1));
  }
}

/// `position` is counted among those that are kept.
void CellGrid::ReadAlong(std::size_t column, std::size_t position, std::span<double> numbers,
                         std::span<CellState> states) const {
  const PackedCells& from = columns_[column];
  if (along_ == axes_.size() || axes_[along_].keeps_all) {
    from.Read([=](std::size_t i) { return position + i; }, numbers, states);
  } else {
    const uint32_t* kept = axes_[along_].kept.data() + position;
    from.Read([=](std::size_t i) { return kept[i]; }, numbers, states);
  }
}

std::string CellGrid::Text(std::size_t ordinal) const {
  const GridCell place = At(ordinal);
  return columns_[place.column].Text(place.row);
}

}  // namespace vok::olap
