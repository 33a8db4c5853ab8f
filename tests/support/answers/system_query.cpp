#include "tests/support/answers/system_query.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "cube/mdx_builder.h"

namespace vok::test {
namespace {

struct CubeDates {
  std::string_view cube;
  bool quarters;
  bool days;
};
constexpr std::array kCubes = {
    CubeDates{"QEL", false, false},      CubeDates{"Quarters", true, false},
    CubeDates{"Days", true, true},       CubeDates{"NoAll", false, false},
    CubeDates{"Deep", false, false},     CubeDates{"Deeper", true, false},
    CubeDates{"LevelName", false, false}};
constexpr std::array kLedgers = {"Ledger1", "Ledger2", "Ledger3", "Ledger & Sons]]"};
constexpr std::array kQuantities = {"", "Units", "Units Quantity", "Facts"};

std::string MemberOf(Date date, const CubeDates& shape) {
  const auto part = [](int number) { return ".[" + std::to_string(number) + ']'; };
  return "[Date]" + part(date.Year()) + (shape.quarters ? part((date.Month() + 2) / 3) : "") +
         part(date.Month()) + (shape.days ? part(date.Day()) : "");
}

CubeState DatesOf(const CubeDates& shape) {
  CubeState state;
  for (int day = 1; day <= 365 * 3; ++day) {
    const Date date = Date::FromCivil(2009, 1, day);
    if (!shape.days && date.Day() != 1) continue;
    state.CubeDates.push_back(date);
    state.CubeDateMembers.push_back(MemberOf(date, shape));
  }
  return state;
}

}  // namespace

std::string RandomSystemQuery(plain::Dice& dice) {
  const CubeDates& shape = dice.OneOf(kCubes);
  CubeState state = DatesOf(shape);
  const int count = static_cast<int>(state.CubeDates.size());
  const int periods = 1 + dice.Below(12);
  for (int i = 0; i < periods; ++i) {
    const int from = dice.Below(count);
    const int length = dice.OneIn(3) ? 0 : dice.Below(dice.OneIn(4) ? count : 13);
    QueryPeriod period;
    period.PeriodNumber = static_cast<int16_t>(i + 1);
    period.PeriodFrom = state.CubeDates[static_cast<std::size_t>(from)];
    period.PeriodUntil =
        state.CubeDates[static_cast<std::size_t>(std::min(from + length, count - 1))];
    period.PeriodMeasure = dice.OneIn(5) ? "Units" : "Amount";
    period.PeriodQty = dice.OneOf(kQuantities);
    state.QueryPeriods.push_back(period);
  }
  DataSourceSetting setting;
  setting.CubeName = shape.cube;
  setting.OBS = dice.OneOf(kLedgers);
  if (dice.OneIn(3)) setting.OBS += "].[book-a.xls";
  state.HasOpeningBalance = !dice.OneIn(4);
  return BuildQueryMdx(setting, state, static_cast<int16_t>(dice.Below(2)));
}

}  // namespace vok::test
