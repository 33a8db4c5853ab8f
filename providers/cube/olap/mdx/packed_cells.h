// A column of cells that takes up no more memory than those of its cells that are not empty, and a
// bit and a half for each row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "providers/cube/olap/mdx/expression.h"

namespace vok::olap {

/// Bit i of word w stands for row 64 * w + i.
using RowBits = LongList<uint64_t>;
inline constexpr std::size_t kRowsOfWord = 64;

class PackedCells {
 public:
  PackedCells() = default;
  explicit PackedCells(Column cells);

  /// Whether all cells are empty.
  bool empty() const { return numbers_.empty(); }
  /// Sets the bits of the rows whose cells are not empty, and no others.
  void MarkFilled(RowBits& rows) const;

  /// The cells of ascending rows: `row_of(i)` is that of cell i, and all cells between two of these
  /// rows are empty.
  template <typename RowOf>
  void Read(const RowOf& row_of, std::span<double> numbers, std::span<CellState> states) const {
    if (numbers.empty()) return;
    std::size_t place = PlaceOf(row_of(0));
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      const bool filled = IsFilled(row_of(i));
      numbers[i] = filled ? numbers_[place] : 0;
      states[i] = filled ? states_[place] : CellState::kEmpty;
      place += filled ? 1 : 0;
    }
  }
  std::string Text(std::size_t row) const;  ///< "" for a cell that is not a text

 private:
  bool IsFilled(std::size_t row) const {
    return (filled_[row / kRowsOfWord] >> row % kRowsOfWord & 1) != 0;
  }
  /// How many cells before `row` are not empty.
  std::size_t PlaceOf(std::size_t row) const;
  void Append(Column& cells, std::size_t row);

  RowBits filled_;
  Rows before_;  ///< how many cells before those of a word are not empty
  LongList<double> numbers_;
  LongList<CellState> states_;
  LongList<std::string> texts_;  ///< empty when no cell is a text
};

}  // namespace vok::olap
