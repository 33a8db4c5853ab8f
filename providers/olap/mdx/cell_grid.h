// The cells of an answer as one block of memory, axis 0 running fastest, and what NON EMPTY leaves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "providers/olap/mdx/expression.h"

namespace vok::olap {

struct CellGrid {
  explicit CellGrid(std::vector<std::size_t> axis_lengths);

  std::size_t size() const { return states.size(); }
  /// Takes over one cell of a column.
  void Put(std::size_t ordinal, const Column& from, std::size_t row);
  /// Per axis the positions that hold a cell which is not empty.
  std::vector<std::vector<uint32_t>> UsedPositions() const;
  /// The cells at these positions of each axis.
  CellGrid Only(const std::vector<std::vector<uint32_t>>& kept) const;

  std::vector<std::size_t> lengths;
  std::vector<std::size_t> strides;
  std::vector<double> numbers;
  std::vector<CellState> states;
  std::map<std::size_t, std::string> texts;  ///< by ordinal
};

}  // namespace vok::olap
