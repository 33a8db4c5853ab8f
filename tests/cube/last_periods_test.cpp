#include <gtest/gtest.h>

#include "cube/mdx_builder.h"
#include "tests/support/failures.h"

namespace vok {
namespace {

Date On(int month, int day = 1) { return Date::FromCivil(2010, month, day); }

/// Members of 2010 on the first of the months given.
CubeState Months(std::initializer_list<int> months) {
  CubeState cube;
  for (const int month : months) {
    cube.CubeDates.push_back(On(month));
    cube.CubeDateMembers.push_back("[" + std::to_string(month) + "]");
  }
  return cube;
}

std::string Argument(CubeState cube, Date from, Date until) {
  QueryPeriod period;
  period.PeriodFrom = from;
  period.PeriodUntil = until;
  cube.QueryPeriods.push_back(period);
  return LastPeriodsArgument(cube, 0).argument;
}

TEST(LastPeriodsArgument, LocatesThePeriodInTheDateList) {
  const CubeState spring = Months({2, 3, 4, 6});
  const struct {
    const char* name;
    CubeState cube;
    Date from;
    Date until;
    const char* expected;
  } cases[] = {
      {"from member to member", spring, On(2), On(4), "(3,[4])"},
      {"to the end of a month", spring, On(2), On(3, 31), "(2,[3])"},
      {"begins between members", spring, On(2, 10), On(4, 5), "(2,[4])"},
      {"begins before the first", spring, On(1), On(3), "(2,[3])"},
      {"reaches past the last", spring, On(4), On(12, 31), "(2,[6])"},
      {"between two members: the next alone", spring, On(4, 5), On(5, 20), "(1,[6])"},
      {"wholly before the first", spring, On(1, 2), On(1, 20), "(1,[2])"},
      {"wholly after the last", spring, On(7), On(8), "(0,)"},
      {"turned round", spring, On(4), On(3), "(0,)"},
      {"one day on a member", spring, On(3), On(3), "(1,[3])"},
      {"one day between members", spring, On(3, 2), On(3, 2), "(1,[4])"},
      {"one day before the first", spring, On(1), On(1), "(1,[2])"},
      {"one day after the last", spring, On(7), On(7), "(0,)"},
      {"times of day do not count", spring, Date{On(3).serial + 0.75}, Date{On(3).serial + 0.9},
       "(1,[3])"},
      {"single member, period before it", Months({5}), On(1), On(2), "(1,[5])"},
      {"single member, period after it", Months({5}), On(7), On(8), "(1,[5])"},
      {"single member, one day", Months({5}), On(9), On(9), "(1,[5])"},
      {"no members", Months({}), On(1), On(2), "(0,)"},
  };
  for (const auto& c : cases) EXPECT_EQ(Argument(c.cube, c.from, c.until), c.expected) << c.name;
}

TEST(LastPeriodsArgument, CountsWhatSixteenBitsHold) {
  CubeState cube;
  for (int day = 0; day < 32768; ++day) cube.CubeDates.push_back(Date{day + 1.0});
  cube.CubeDateMembers.assign(cube.CubeDates.size(), "[d]");
  EXPECT_EQ(Argument(cube, Date{1}, Date{32767}), "(32767,[d])");
  EXPECT_EQ(test::NumberOf([&] { Argument(cube, Date{1}, Date{32768}); }),
            failure_number::kOverflow);
  for (const int16_t k : {int16_t{-1}, int16_t{0}}) {
    EXPECT_THROW(LastPeriodsArgument(cube, k), Failure) << "an entry that is not there";
  }
}

}  // namespace
}  // namespace vok
