#include "cube/query_periods.h"

#include <algorithm>

namespace vok {
namespace {

QueryPeriod MakeEntry(const CurrentSettings& settings, const CubeState& cube, int number) {
  const PeriodEntry& period = settings.periods.Period(number);
  const MoneySetEntry& money = settings.data_source.MoneySets.at(static_cast<std::size_t>(number));
  QueryPeriod entry;
  entry.PeriodFrom = period.FromDate;
  entry.PeriodNumber = static_cast<int16_t>(number);
  entry.PeriodLabel = period.PeriodName;
  entry.PeriodMeasure = money.Measure;
  entry.PeriodQty = money.Qty;
  if (cube.HasOpeningBalance) entry.PeriodOpenBalance = period.IncludeOpenBalance ? -1 : 0;
  return entry;
}

bool OverlapsCube(const PeriodEntry& period, const CubeState& cube) {
  return !period.UntilDate.IsZero() && period.UntilDate >= cube.FirstDate &&
         cube.LastDate >= period.FromDate;
}

void TakeOverlapping(const CurrentSettings& settings, CubeState& cube) {
  for (int number = 1; number <= kPeriodCount; ++number) {
    const PeriodEntry& period = settings.periods.Period(number);
    if (!OverlapsCube(period, cube)) continue;
    QueryPeriod entry = MakeEntry(settings, cube, number);
    entry.PeriodUntil = period.UntilDate;
    if (cube.LastDate < period.UntilDate) {
      entry.PeriodUntil = cube.LastDate;
      entry.PeriodFrom = std::min(entry.PeriodFrom, cube.LastDate);
    }
    cube.QueryPeriods.push_back(std::move(entry));
  }
}

Date OpeningUntil(const PeriodEntry& period, const CubeState& cube) {
  if (period.UntilDate > cube.LastDate) return cube.LastDate;
  return period.UntilDate.IsZero() ? period.FromDate : period.UntilDate;
}

void TakeOpening(CurrentSettings& settings, CubeState& cube) {
  for (int number = 1; number <= kPeriodCount; ++number) {
    PeriodEntry& period = settings.periods.Period(number);
    const bool begins_in_cube =
        period.FromDate <= cube.LastDate && period.FromDate >= cube.FirstDate;
    if (!begins_in_cube) period.IncludeOpenBalance = false;
    if (!period.IncludeOpenBalance) continue;
    QueryPeriod entry = MakeEntry(settings, cube, number);
    entry.PeriodUntil = OpeningUntil(period, cube);
    cube.QueryPeriods.push_back(std::move(entry));
  }
}

}  // namespace

bool PrepareQueryPeriods(CurrentSettings& settings, CubeState& cube, bool open_balance_pass) {
  cube.QueryPeriods.clear();
  if (open_balance_pass) {
    TakeOpening(settings, cube);
  } else {
    TakeOverlapping(settings, cube);
  }
  return !cube.QueryPeriods.empty();
}

}  // namespace vok
