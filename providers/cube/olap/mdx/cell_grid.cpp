#include "providers/cube/olap/mdx/cell_grid.h"

#include <algorithm>
#include <utility>

namespace vok::olap {

CellGrid::CellGrid(std::vector<std::size_t> lengths, std::size_t along)
    : lengths_(std::move(lengths)), along_(along), axes_(lengths_.size()) {
  std::size_t count = 1;
  for (std::size_t axis = 0; axis < lengths_.size(); ++axis) {
    if (axis != along_) count *= lengths_[axis];
  }
  columns_.resize(count);
}

void CellGrid::DropEmpty(const std::vector<bool>& axes) {
  std::vector<std::vector<uint8_t>> used;
  for (const std::size_t length : lengths_) used.emplace_back(length, 0);
  if (column_length() > 0) {
    for (std::size_t index = 0; index < columns_.size(); ++index) MarkUsed(index, used);
  }
  for (std::size_t axis = 0; axis < axes_.size(); ++axis) {
    if (!axes[axis]) continue;
    Rows& kept = axes_[axis].kept;
    for (uint32_t position = 0; position < used[axis].size(); ++position) {
      if (used[axis][position] != 0) kept.push_back(position);
    }
    axes_[axis].keeps_all = kept.size() == lengths_[axis];
  }
}

void CellGrid::MarkUsed(std::size_t index, std::vector<std::vector<uint8_t>>& used) const {
  const CellState* states = columns_[index].states.data();
  const std::size_t rows = columns_[index].size();
  uint8_t any = 0;
  if (along_ < lengths_.size()) {
    uint8_t* along = used[along_].data();
    for (std::size_t row = 0; row < rows; ++row) {
      const auto state = static_cast<uint8_t>(states[row]);
      along[row] |= state;
      any |= state;
    }
  } else {
    any = static_cast<uint8_t>(states[0]);
  }
  if (any == 0) return;
  for (std::size_t axis = 0; axis < lengths_.size(); ++axis) {
    if (axis == along_) continue;
    used[axis][index % lengths_[axis]] = 1;
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
    numbers[i] = columns_[place.column].numbers[place.row];
    states[i] = columns_[place.column].states[place.row];
  }
}

/// `position` is counted among those that are kept.
void CellGrid::ReadAlong(std::size_t column, std::size_t position, std::span<double> numbers,
                         std::span<CellState> states) const {
  const Column& from = columns_[column];
  if (along_ == axes_.size() || axes_[along_].keeps_all) {
    std::copy_n(from.numbers.begin() + static_cast<std::ptrdiff_t>(position), numbers.size(),
                numbers.begin());
    std::copy_n(from.states.begin() + static_cast<std::ptrdiff_t>(position), states.size(),
                states.begin());
    return;
  }
  const uint32_t* kept = axes_[along_].kept.data() + position;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    numbers[i] = from.numbers[kept[i]];
    states[i] = from.states[kept[i]];
  }
}

std::string CellGrid::Text(std::size_t ordinal) const {
  const GridCell place = At(ordinal);
  const auto& texts = columns_[place.column].texts;
  return texts.empty() ? std::string() : texts[place.row];
}

}  // namespace vok::olap
