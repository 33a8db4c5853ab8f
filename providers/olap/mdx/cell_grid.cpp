#include "providers/olap/mdx/cell_grid.h"

#include <utility>

namespace vok::olap {
namespace {

/// Steps through all combinations of indexes below `lengths`, the first running fastest.
class Odometer {
 public:
  explicit Odometer(const std::vector<std::size_t>& lengths)
      : lengths_(lengths), at_(lengths.size(), 0) {}
  const std::vector<std::size_t>& at() const { return at_; }
  void Step() {
    for (std::size_t i = 0; i < at_.size() && ++at_[i] == lengths_[i]; ++i) at_[i] = 0;
  }

 private:
  const std::vector<std::size_t>& lengths_;
  std::vector<std::size_t> at_;
};

}  // namespace

CellGrid::CellGrid(std::vector<std::size_t> axis_lengths) : lengths(std::move(axis_lengths)) {
  std::size_t total = 1;
  for (const std::size_t length : lengths) {
    strides.push_back(total);
    total *= length;
  }
  numbers.resize(total);
  states.resize(total, CellState::kEmpty);
}

void CellGrid::Put(std::size_t ordinal, const Column& from, std::size_t row) {
  numbers[ordinal] = from.numbers[row];
  states[ordinal] = from.states[row];
  if (from.states[row] == CellState::kText) texts[ordinal] = from.texts[row];
}

std::vector<std::vector<uint32_t>> CellGrid::UsedPositions() const {
  std::vector<std::vector<bool>> used;
  for (const std::size_t length : lengths) used.emplace_back(length, false);
  Odometer odometer(lengths);
  for (std::size_t ordinal = 0; ordinal < size(); ++ordinal, odometer.Step()) {
    if (states[ordinal] == CellState::kEmpty) continue;
    for (std::size_t axis = 0; axis < used.size(); ++axis) used[axis][odometer.at()[axis]] = true;
  }
  std::vector<std::vector<uint32_t>> positions(lengths.size());
  for (std::size_t axis = 0; axis < used.size(); ++axis) {
    for (uint32_t i = 0; i < used[axis].size(); ++i) {
      if (used[axis][i]) positions[axis].push_back(i);
    }
  }
  return positions;
}

CellGrid CellGrid::Only(const std::vector<std::vector<uint32_t>>& kept) const {
  std::vector<std::size_t> new_lengths;
  for (const auto& positions : kept) new_lengths.push_back(positions.size());
  CellGrid result(new_lengths);
  Odometer odometer(result.lengths);
  for (std::size_t to = 0; to < result.size(); ++to, odometer.Step()) {
    std::size_t from = 0;
    for (std::size_t axis = 0; axis < kept.size(); ++axis) {
      from += kept[axis][odometer.at()[axis]] * strides[axis];
    }
    result.numbers[to] = numbers[from];
    result.states[to] = states[from];
    if (states[from] == CellState::kText) result.texts[to] = texts.at(from);
  }
  return result;
}

}  // namespace vok::olap
