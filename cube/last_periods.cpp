#include "cube/last_periods.h"

#include <limits>

#include "platform/failure.h"

namespace vok {
namespace {

struct Covered {
  std::size_t count = 0;
  std::size_t last = 0;  ///< index of the last member covered, when there is one
};

const QueryPeriod& EntryAt(const CubeState& cube, int16_t k) {
  if (k < 0 || static_cast<std::size_t>(k) >= cube.QueryPeriods.size()) {
    throw Failure(failure_number::kSubscript,
                  "Subscript out of range: the query has no period entry " + std::to_string(k));
  }
  return cube.QueryPeriods[static_cast<std::size_t>(k)];
}

Covered CollectFrom(const std::vector<Date>& dates, std::size_t first, Date until) {
  Covered covered;
  while (covered.count + first < dates.size() && dates[covered.count + first] <= until) {
    covered.last = covered.count + first;
    ++covered.count;
  }
  return covered;
}

Covered CoverRange(const std::vector<Date>& dates, Date from, Date until) {
  for (std::size_t j = 0; j < dates.size(); ++j) {
    if (from == dates[j]) return CollectFrom(dates, j, until);
    if (until < dates[j]) return {1, j};
    if (from < dates[j]) return CollectFrom(dates, j, until);
  }
  return {};
}

Covered CoverDay(const std::vector<Date>& dates, Date day) {
  for (std::size_t j = 0; j < dates.size(); ++j) {
    if (day <= dates[j]) return {1, j};
  }
  return {};
}

Covered Cover(const std::vector<Date>& dates, Date from, Date until) {
  if (dates.size() == 1) return {1, 0};
  return from == until ? CoverDay(dates, from) : CoverRange(dates, from, until);
}

int16_t NarrowCount(std::size_t count, const QueryPeriod& entry) {
  if (count > static_cast<std::size_t>(std::numeric_limits<int16_t>::max())) {
    throw Failure(failure_number::kOverflow, "Overflow: period " +
                                                 std::to_string(entry.PeriodNumber) + " covers " +
                                                 std::to_string(count) +
                                                 " date members of the cube; at most 32767 can be "
                                                 "asked for, choose a shorter period");
  }
  return static_cast<int16_t>(count);
}

}  // namespace

LastPeriods LastPeriodsArgument(const CubeState& cube, int16_t k) {
  const QueryPeriod& entry = EntryAt(cube, k);
  const Covered covered =
      Cover(cube.CubeDates, entry.PeriodFrom.DayOnly(), entry.PeriodUntil.DayOnly());
  LastPeriods result;
  result.count = NarrowCount(covered.count, entry);
  const std::string member = covered.count == 0 ? "" : cube.CubeDateMembers.at(covered.last);
  const std::string count = std::to_string(result.count);
  result.argument = "(" + count + "," + member + ")";
  return result;
}

}  // namespace vok
