#include "cube/mdx_builder.h"

#include "cube/last_periods.h"

namespace vok {
namespace {

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
