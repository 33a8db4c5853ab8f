#include "cube/mdx_builder.h"

#include <gmock/gmock.h>

namespace vok {
namespace {

using ::testing::EndsWith;

/// Four months of 2010; periods 1 (January to March, with quantity) and 2 (April, without).
struct MdxBuilderTest : ::testing::Test {
  MdxBuilderTest() {
    setting.CubeName = "QEL";
    setting.OBS = "Ledger1";
    cube.HasOpeningBalance = true;
    for (int month = 1; month <= 4; ++month) {
      cube.CubeDates.push_back(Date::FromCivil(2010, month, 1));
      cube.CubeDateMembers.push_back("[Date].[2010].[" + std::to_string(month) + "]");
    }
    Take(1, 1, 3, "Units");
    Take(2, 4, 4, "");
  }

  void Take(int16_t number, int from, int until, const std::string& qty) {
    QueryPeriod period;
    period.PeriodNumber = number;
    period.PeriodFrom = Date::FromCivil(2010, from, 1);
    period.PeriodUntil = Date::FromCivil(2010, until, 1);
    period.PeriodMeasure = "Amount";
    period.PeriodQty = qty;
    cube.QueryPeriods.push_back(period);
  }

  DataSourceSetting setting;
  CubeState cube;
};

TEST_F(MdxBuilderTest, BuildsTheWholeQuery) {
  EXPECT_EQ(
      BuildQueryMdx(setting, cube, 0),
      "WITH MEMBER [DATE].[Q0] AS \r\n"
      "'SUM(LastPeriods(3,[Date].[2010].[3]),[Measures].[Units]) ', FORMAT_STRING = '#0.00' \r\n"
      "MEMBER [DATE].[m0] AS \r\n"
      "'SUM(LastPeriods(3,[Date].[2010].[3]),[Measures].[Amount]) ', FORMAT_STRING = '#0.00'\r\n"
      "MEMBER [DATE].[Q1] AS \r\n"
      "'( SUM(LastPeriods(1,[Date].[2010].[4]),[Measures].[Amount])) - (  "
      "SUM(LastPeriods(1,[Date].[2010].[4]),[Measures].[Amount])) ', FORMAT_STRING = '#0.00' \r\n"
      "MEMBER [DATE].[m1] AS \r\n"
      "'SUM(LastPeriods(1,[Date].[2010].[4]),[Measures].[Amount]) ', FORMAT_STRING = '#0.00'\r\n"
      "SELECT NON EMPTY{ \r\n"
      "[DATE].[Q0], \r\n"
      "[DATE].[m0], \r\n"
      "[DATE].[Q1], \r\n"
      "[DATE].[m1] \r\n"
      "} ON COLUMNS,  NON Empty {[QeL].[QeL].Members}  ON ROWS  FROM  [QEL] "
      "WHERE ( [ActX].[xlFile].[All].[Ledger1], [Opening_Balance].[All].[0])");
}

TEST_F(MdxBuilderTest, EscapesNothingAndFiltersByTheOpeningBalanceOnlyWhenTheCubeHasOne) {
  setting.CubeName = "a]b'";
  setting.OBS = "";
  const std::string from = "FROM  [a]b'] WHERE ( [ActX].[xlFile].[All].[]";
  EXPECT_THAT(BuildQueryMdx(setting, cube, 1), EndsWith(from + ", [Opening_Balance].[All].[1])"));
  cube.HasOpeningBalance = false;
  EXPECT_THAT(BuildQueryMdx(setting, cube, 1), EndsWith(from + ")"));
}

}  // namespace
}  // namespace vok
