// The cells of an answer, axis 0 running fastest, and what NON EMPTY leaves of them. They lie in
// columns along one of the axes, one for each combination of positions of the others, without those
// that are empty; dropped positions are passed over on reading.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "providers/cube/olap/mdx/packed_cells.h"

namespace vok::olap {

class CellGrid {
 public:
  CellGrid() = default;
  /// `along`: the axis of the columns; the number of axes for columns of one cell.
  CellGrid(std::vector<std::size_t> lengths, std::size_t along);

  std::size_t column_count() const { return columns_.size(); }
  std::size_t column_length() const { return along_ < lengths_.size() ? lengths_[along_] : 1; }
  /// Columns are counted with the first of the other axes running fastest.
  void SetColumn(std::size_t index, Column cells) {
    columns_[index] = PackedCells(std::move(cells));
  }

  /// Keeps of these axes only positions with a cell that is not empty, apart from what is kept of
  /// others.
  void DropEmpty(const std::vector<bool>& axes);
  /// Whether every position of the axis is kept.
  bool KeepsAll(std::size_t axis) const { return axes_[axis].keeps_all; }
  const Rows& Kept(std::size_t axis) const { return axes_[axis].kept; }

  /// Number of cells that are kept; they are counted from 0.
  std::size_t size() const;
  /// The cells `first`, `first + step` and so on, all of them there.
  void Read(std::size_t first, std::size_t step, std::span<double> numbers,
            std::span<CellState> states) const;
  std::string Text(std::size_t ordinal) const;  ///< "" for a cell that is not a text

 private:
  struct Axis {
    bool keeps_all = true;
    Rows kept;
  };
  struct GridCell {
    std::size_t column = 0;
    std::size_t row = 0;
  };

  GridCell At(std::size_t ordinal) const;
  void ReadAlong(std::size_t column, std::size_t position, std::span<double> numbers,
                 std::span<CellState> states) const;
  std::size_t KeptCount(std::size_t axis) const;
  void MarkUsed(std::size_t column, std::vector<RowBits>& used) const;

  std::vector<std::size_t> lengths_;
  std::size_t along_ = 0;
  std::vector<Axis> axes_;
  std::vector<PackedCells> columns_;
};

}  // namespace vok::olap
