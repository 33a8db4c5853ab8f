#include "providers/cube/olap/mdx/packed_cells.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace vok::olap {
namespace {

/// Bit i: state i is not that of an empty cell. At most 64 states.
uint64_t FilledBits(std::span<const CellState> states) {
  uint64_t bits = 0;
  for (std::size_t i = 0; i < states.size(); ++i) {
    bits |= static_cast<uint64_t>(states[i] != CellState::kEmpty) << i;
  }
  return bits;
}

}  // namespace

PackedCells::PackedCells(Column cells) {
  const std::span<const CellState> states(cells.states);
  const auto empty =
      static_cast<std::size_t>(std::count(states.begin(), states.end(), CellState::kEmpty));
  numbers_.reserve(states.size() - empty);
  states_.reserve(states.size() - empty);
  filled_.reserve(states.size() / kRowsOfWord + 1);
  before_.reserve(states.size() / kRowsOfWord + 1);
  for (std::size_t row = 0; row < states.size(); row += kRowsOfWord) {
    before_.push_back(static_cast<uint32_t>(numbers_.size()));
    const std::size_t count = std::min(kRowsOfWord, states.size() - row);
    filled_.push_back(FilledBits(states.subspan(row, count)));
    for (uint64_t rest = filled_.back(); rest != 0; rest &= rest - 1) {
      Append(cells, row + static_cast<std::size_t>(std::countr_zero(rest)));
    }
  }
}

void PackedCells::Append(Column& cells, std::size_t row) {
  numbers_.push_back(cells.numbers[row]);
  states_.push_back(cells.states[row]);
  if (!cells.texts.empty()) texts_.push_back(std::move(cells.texts[row]));
}

void PackedCells::MarkFilled(RowBits& rows) const {
  for (std::size_t word = 0; word < filled_.size(); ++word) rows[word] |= filled_[word];
}

std::size_t PackedCells::PlaceOf(std::size_t row) const {
  const uint64_t before = filled_[row / kRowsOfWord] & ((uint64_t{1} << row % kRowsOfWord) - 1);
  return before_[row / kRowsOfWord] + static_cast<std::size_t>(std::popcount(before));
}

std::string PackedCells::Text(std::size_t row) const {
  return texts_.empty() || !IsFilled(row) ? std::string() : texts_[PlaceOf(row)];
}

}  // namespace vok::olap
