// The grid of values that a query leaves in the workbook.
//
// Grid row and column are the sheet's. Columns 1 to 11 are the row's headers, from the caption of
// its member; period k has its quantity in column 2k + 10 and its money in column 2k + 11.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "cube/cube_state.h"
#include "platform/cube.h"
#include "platform/spreadsheet.h"

namespace vok {

/// Rows above those of the first query.
inline constexpr std::size_t kLabelRows = 1;

/// Column of a period's quantity; its money stands in the next one.
constexpr std::size_t QuantityColumn(int16_t period) {
  return 2 * static_cast<std::size_t>(period) + 10;
}

/// A grid that is read from top to bottom, some rows at a time.
class GridRows {
 public:
  virtual ~GridRows() = default;
  /// The next rows, `most` of them as long as there are so many; none at the end.
  virtual CellBlock Next(std::size_t most) = 0;
};

/// The grid of an executed query over `periods`: one row per row position, below one blank row for
/// the labels unless `append`. Cells that no field or column reaches stay empty. Failures: 445 for
/// more than two axes, 9 for a column that belongs to none of the periods.
class ResultGrid : public GridRows {
 public:
  /// `cellset` outlives this.
  ResultGrid(const Cellset& cellset, const std::vector<QueryPeriod>& periods, bool append);
  CellBlock Next(std::size_t most) override;

 private:
  const Cellset& cellset_;
  std::vector<std::size_t> column_map_;
  std::size_t columns_ = 0;
  std::size_t label_rows_;    ///< still to come
  std::size_t position_ = 0;  ///< the next one
};

/// Whether a cell shows in the sheet: a finite number other than zero. Else it is "".
bool IsShown(CellState state, double number);

}  // namespace vok
