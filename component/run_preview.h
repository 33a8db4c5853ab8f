// What can be shown of a run without its workbook: the first rows of the sheet and the money in
// all, kept from the grid while it passes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cube/cube_state.h"
#include "platform/spreadsheet.h"
#include "settings/records.h"

namespace vok {

struct MoneyTotal {
  int16_t PeriodNumber = 0;
  std::string name;  ///< the period's
  double total = 0;  ///< over all rows of all passes, added in their order
};

struct RunPreview {
  static constexpr std::size_t kRows = 100;

  std::vector<std::string> labels;       ///< of the sheet's columns from A; "" where there is none
  std::vector<std::vector<Value>> rows;  ///< the first ones, from column A
  std::vector<MoneyTotal> money;         ///< of the periods that were asked for, by their number
};

/// Adds rows of the grid of one query over `periods`, as they are written to the sheet, from the
/// block's row `first` on.
void AddToPreview(const CellBlock& grid, std::size_t first, const std::vector<QueryPeriod>& periods,
                  const PeriodSet& set, RunPreview& preview);

}  // namespace vok
