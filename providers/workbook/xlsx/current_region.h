// How far down the block around A1 reaches, followed while rows are written from top to bottom.
//
// The block is the smallest rectangle from A1 on that has only blank cells along its right and
// lower border, the corner included. A row that does not touch it ends it for good: what is written
// to row 1 later widens the block, but no longer joins rows to it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/spreadsheet.h"

namespace vok::xlsx {

class CurrentRegion {
 public:
  /// A row of a block whose first column is `column`; row 1 may come again.
  void Add(std::size_t row, std::size_t column, const BlockCell* cells, std::size_t count);
  std::size_t rows() const { return bottom_; }

 private:
  std::size_t bottom_ = 1;
  std::size_t right_ = 1;
  bool ended_ = false;
  std::vector<bool> filled_;  // columns from 1 on that have something within these rows
};

}  // namespace vok::xlsx
