#include "cube/query_periods.h"

#include <gtest/gtest.h>

namespace vok {
namespace {

Date DayOf2010(int month, int day) { return Date::FromCivil(2010, month, day); }
const Date kNoDate{};

/// A cube from 1 February to 31 October 2010 with opening balances; no period is set.
struct QueryPeriodsTest : ::testing::Test {
  QueryPeriodsTest() {
    cube.FirstDate = DayOf2010(2, 1);
    cube.LastDate = DayOf2010(10, 31);
    cube.HasOpeningBalance = true;
  }

  void Set(int number, Date from, Date until, bool opening = false) {
    settings.periods.Period(number) = {"P" + std::to_string(number), from, until, opening};
  }

  CurrentSettings settings;
  CubeState cube;
};

TEST_F(QueryPeriodsTest, TakesWhatOverlapsTheCubeAndInTheOpeningPassWhatBeginsInIt) {
  const Date never = Date{-1};
  const struct {
    const char* name;
    Date from, until;
    Date plain, opening;  // the until date that it is prepared with; never: it is not taken
  } cases[] = {
      {"within", DayOf2010(3, 1), DayOf2010(3, 31), DayOf2010(3, 31), DayOf2010(3, 31)},
      {"begins before the cube", DayOf2010(1, 31), DayOf2010(2, 28), DayOf2010(2, 28), never},
      {"until the first date", DayOf2010(1, 1), DayOf2010(2, 1), DayOf2010(2, 1), never},
      {"ends before the cube", DayOf2010(1, 1), DayOf2010(1, 31), never, never},
      {"begins on the first date", DayOf2010(2, 1), DayOf2010(3, 31), DayOf2010(3, 31),
       DayOf2010(3, 31)},
      {"until the last date", DayOf2010(10, 1), DayOf2010(10, 31), DayOf2010(10, 31),
       DayOf2010(10, 31)},
      {"ends after the cube", DayOf2010(10, 1), DayOf2010(12, 31), DayOf2010(10, 31),
       DayOf2010(10, 31)},
      {"begins on the last date", DayOf2010(10, 31), DayOf2010(12, 31), DayOf2010(10, 31),
       DayOf2010(10, 31)},
      {"begins after the cube", DayOf2010(11, 1), DayOf2010(12, 31), never, never},
      {"no until date: the from date", DayOf2010(3, 1), kNoDate, never, DayOf2010(3, 1)},
      {"no from date", kNoDate, DayOf2010(3, 31), DayOf2010(3, 31), never},
      {"ends before it begins", DayOf2010(5, 1), DayOf2010(3, 1), DayOf2010(3, 1), DayOf2010(3, 1)},
  };
  for (const auto& c : cases) {
    for (const bool opening : {false, true}) {
      const Date until = opening ? c.opening : c.plain;
      Set(1, c.from, c.until, opening);
      EXPECT_EQ(PrepareQueryPeriods(settings, cube, opening), until != never) << c.name;
      EXPECT_EQ(settings.periods.Period(1).IncludeOpenBalance, opening && until != never) << c.name;
      ASSERT_EQ(cube.QueryPeriods.size(), until == never ? 0u : 1u) << c.name;
      if (until == never) continue;
      EXPECT_EQ(cube.QueryPeriods[0].PeriodFrom, c.from) << c.name;
      EXPECT_EQ(cube.QueryPeriods[0].PeriodUntil, until) << c.name;
      EXPECT_EQ(cube.QueryPeriods[0].PeriodOpenBalance, opening ? -1 : 0) << c.name;
    }
  }
  Set(1, DayOf2010(3, 1), DayOf2010(3, 31), false);
  EXPECT_FALSE(PrepareQueryPeriods(settings, cube, true)) << "not asked";
}

}  // namespace
}  // namespace vok
