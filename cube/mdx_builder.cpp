#include "cube/mdx_builder.h"

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

constexpr const char* kLineEnd = "\r\n";
constexpr const char* kFormat = ", FORMAT_STRING = '#0.00'";

std::string SumOver(const std::string& argument, const std::string& measure) {
  return "SUM(LastPeriods" + argument + ",[Measures].[" + measure + "])";
}

std::string Quoted(const std::string& formula) { return "'" + formula + " '"; }

std::string MemberHead(char kind, const std::string& index) {
  return std::string("MEMBER [DATE].[") + kind + index + "] AS " + kLineEnd;
}

/// A period without a quantity measure still has its quantity column, which is always zero.
std::string QuantityFormula(const QueryPeriod& period, const std::string& argument) {
  if (!period.PeriodQty.empty()) return Quoted(SumOver(argument, period.PeriodQty));
  const std::string money = SumOver(argument, period.PeriodMeasure);
  return Quoted("( " + money + ") - (  " + money + ")");
}

std::string PeriodMembers(const CubeState& cube, int16_t k) {
  const QueryPeriod& period = cube.QueryPeriods[static_cast<std::size_t>(k)];
  const std::string argument = LastPeriodsArgument(cube, k).argument;
  const std::string index = std::to_string(k);
  return MemberHead('Q', index) + QuantityFormula(period, argument) + kFormat + " " + kLineEnd +
         MemberHead('m', index) + Quoted(SumOver(argument, period.PeriodMeasure)) + kFormat +
         kLineEnd;
}

std::string ColumnPair(int16_t k, bool last) {
  const std::string index = std::to_string(k);
  return "[DATE].[Q" + index + "], " + kLineEnd + "[DATE].[m" + index + (last ? "] " : "], ") +
         kLineEnd;
}

std::string Slicer(const DataSourceSetting& data_source, const CubeState& cube, int16_t key) {
  const std::string obs = " WHERE ( [ActX].[xlFile].[All].[" + data_source.OBS + "]";
  if (!cube.HasOpeningBalance) return obs + ")";
  return obs + ", [Opening_Balance].[All].[" + std::to_string(key) + "])";
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

std::string BuildQueryMdx(const DataSourceSetting& data_source, const CubeState& cube,
                          int16_t open_balance_key) {
  const auto count = static_cast<int16_t>(cube.QueryPeriods.size());
  std::string mdx = "WITH ";
  for (int16_t k = 0; k < count; ++k) mdx += PeriodMembers(cube, k);
  mdx += std::string("SELECT NON EMPTY{ ") + kLineEnd;
  const auto last = static_cast<int16_t>(count == 0 ? 0 : count - 1);
  for (int16_t k = 0; k <= last; ++k) mdx += ColumnPair(k, k == last);
  mdx += "} ON COLUMNS,  NON Empty {[QeL].[QeL].Members}  ON ROWS  FROM  [" + data_source.CubeName +
         "]";
  return mdx + Slicer(data_source, cube, open_balance_key);
}

}  // namespace vok
