#include "component/run_preview.h"

#include <algorithm>

#include "component/result_grid.h"
#include "component/workbook_writer.h"

namespace vok {
namespace {

MoneyTotal& TotalOf(int16_t period, const PeriodSet& set, std::vector<MoneyTotal>& money) {
  const auto place = std::lower_bound(
      money.begin(), money.end(), period,
      [](const MoneyTotal& total, int16_t number) { return total.PeriodNumber < number; });
  if (place != money.end() && place->PeriodNumber == period) return *place;
  return *money.insert(place, {period, set.Period(period).PeriodName});
}

void AddLabels(std::size_t columns, const PeriodSet& set, std::vector<std::string>& labels) {
  const auto of_periods = PeriodLabels(set);
  labels.resize(std::max(labels.size(), columns));
  const std::size_t count = std::min(of_periods.size(), labels.size() - (kFirstLabelColumn - 1));
  std::copy_n(of_periods.begin(), count, labels.begin() + kFirstLabelColumn - 1);
}

}  // namespace

void AddToPreview(const CellBlock& grid, std::size_t first, const std::vector<QueryPeriod>& periods,
                  const PeriodSet& set, RunPreview& preview) {
  AddLabels(grid.columns(), set, preview.labels);
  for (std::size_t row = first; row <= grid.rows() && preview.rows.size() < RunPreview::kRows;
       ++row) {
    auto& cells = preview.rows.emplace_back();
    for (std::size_t i = 1; i <= grid.columns(); ++i) cells.push_back(grid.ValueAt(row, i));
  }
  for (const QueryPeriod& period : periods) {
    double& total = TotalOf(period.PeriodNumber, set, preview.money).total;
    const std::size_t column = QuantityColumn(period.PeriodNumber) + 1;
    for (std::size_t row = first; row <= grid.rows(); ++row) {
      const BlockCell& cell = grid.Row(row)[column - 1];
      if (cell.kind == BlockCell::Kind::kNumber) total += cell.number;
    }
  }
}

}  // namespace vok
