#include "cube/probe.h"

#include <gmock/gmock.h>

#include "tests/support/fake_cube.h"
#include "tests/support/memory_host.h"

namespace vok::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

FakeLevel Numbered(const std::string& name, int count) {
  FakeLevel level{name, {}};
  for (int n = 0; n < count; ++n) level.members.push_back({std::to_string(n)});
  return level;
}

/// All, 2009 and 2010, a half-year each, two months each.
FakeDimension MonthDates() {
  return {
      "Date",
      {{"All dates", {{"All"}}, true},
       {"Year", {{"2009", 0}, {"2010", 0}}},
       {"Half", {{"H2", 0}, {"H1", 1}}},
       {"Month",
        {{"11", 0, "[d].[11]"}, {"12", 0, "[d].[12]"}, {"1", 1, "[d].[1]"}, {"2", 1, "[d].[2]"}}}}};
}

FakeDimension DayDates() {
  FakeDimension dates = MonthDates();
  dates.levels.push_back(
      {"Day", {{"30", 0, "[d].[30]"}, {"31", 1, "[d].[31]"}, {"28", 3, "[d].[28]"}}});
  return dates;
}

FakeDimension Measures() { return {"Measures", {{"MeasuresLevel", {{"Amount"}, {"Units"}}}}}; }

struct ProbeTest : ::testing::Test {
  ProbeTest() {
    cube.dimensions = {Measures(), MonthDates()};
    cube.answer = [](const std::string&) {
      return FakeAnswer{{{}, {{{"File 1", "", "", ""}}, {{"File 2", "", "", ""}}}}, {}};
    };
    setting.CubeName = "QEL";
    setting.OBS = "Ledger1";
  }

  int32_t Probe() {
    const auto connection = provider.Connect("", nullptr);
    return GetMaxDateAndOpBalance(host, *connection, setting, state);
  }

  FakeCube cube;
  FakeCubeProvider provider{cube};
  MemoryHost memory;
  Host host{memory.host.component, memory.files, memory.registry,
            memory.locale,         memory.clock, memory.boxes,
            memory.no_database,    provider,     memory.no_spreadsheet};
  DataSourceSetting setting;
  CubeState state;
};

TEST_F(ProbeTest, DatesAreReadByMonthOrByDay) {
  const Date nov30 = Date::FromCivil(2009, 11, 30), dec31 = Date::FromCivil(2009, 12, 31),
             feb28 = Date::FromCivil(2010, 2, 28);
  FakeDimension nameless = DayDates();
  nameless.levels[3].members[0].name = nameless.levels[4].members[0].name = "";
  const struct {
    const char* name;
    FakeDimension dimension;
    std::vector<Date> dates;
    std::vector<std::string> members;
  } cases[] = {
      {"by month",
       MonthDates(),
       {Date::FromCivil(2009, 11, 1), Date::FromCivil(2009, 12, 1), Date::FromCivil(2010, 1, 1),
        Date::FromCivil(2010, 2, 1)},
       {"[d].[11]", "[d].[12]", "[d].[1]", "[d].[2]"}},
      {"by day", DayDates(), {nov30, dec31, feb28}, {"[d].[30]", "[d].[31]", "[d].[28]"}},
      {"a first day whose month has no name", nameless, {dec31, feb28}, {"[d].[31]", "[d].[28]"}},
  };
  for (const auto& [name, dimension, dates, members] : cases) {
    cube.dimensions[1] = dimension;
    ASSERT_EQ(Probe(), 0) << name;
    EXPECT_EQ(state.CubeDates, dates) << name;
    EXPECT_EQ(state.FirstDate, dates.front()) << name;
    EXPECT_EQ(state.LastDate, dates.back()) << name;
    EXPECT_EQ(state.CubeDateMembers, members) << name;
  }
}

TEST_F(ProbeTest, AppendsTheMeasuresToTheListAndReplacesTheRest) {
  const char* query =
      "SELECT { [Measures]} ON COLUMNS,  NON Empty{[ActX].[xlFile].[All].[Ledger1].children} ON "
      "ROWS  FROM  [QEL]";
  for (int time = 0; time < 2; ++time) ASSERT_EQ(Probe(), 0);
  EXPECT_THAT(cube.queries, ElementsAre(query, query));
  EXPECT_THAT(state.CubeMeasures, ElementsAre(Value(), Value("Amount"), Value("Units"),
                                              Value("Amount"), Value("Units")));
  EXPECT_EQ(state.CubeDates.size(), 4u);
  EXPECT_THAT(state.ObsChildren, ElementsAre("File 1", "File 2"));
}

TEST_F(ProbeTest, FlagsComeFromCountsAndAreClearedForCubesWithoutTheDimensions) {
  const struct {
    const char* name;
    std::vector<FakeDimension> more;
    bool opening_balance, actx;
  } cases[] = {
      {"neither dimension", {}, false, false},
      {"two members on the last level, two levels",
       {{"Opening_Balance", {Numbered("(All)", 1), Numbered("Key", 2)}},
        {"actx", {Numbered("(All)", 1), Numbered("File", 2)}}},
       true,
       false},
      {"one member on the last level, three levels",
       {{"Opening_Balance", {Numbered("x", 2), Numbered("Key", 1)}},
        {"actx", {Numbered("(All)", 1), Numbered("Ledger", 1), Numbered("File", 2)}}},
       false,
       true},
      {"no levels", {{"Opening_Balance", {}}, {"actx", {}}}, false, false},
  };
  for (const auto& c : cases) {
    state.HasOpeningBalance = !c.opening_balance;
    state.HasActX = !c.actx;
    cube.dimensions = {Measures(), MonthDates()};
    cube.dimensions.insert(cube.dimensions.end(), c.more.begin(), c.more.end());
    ASSERT_EQ(Probe(), 0) << c.name;
    EXPECT_EQ(state.HasOpeningBalance, c.opening_balance) << c.name;
    EXPECT_EQ(state.HasActX, c.actx) << c.name;
  }
}

TEST_F(ProbeTest, FailuresAreReportedAndTheirNumberReturned) {
  const struct {
    const char* name;
    std::function<void(FakeCube&)> spoil;
    int32_t number;
    const char* text;
  } cases[] = {
      {"no dates", [](FakeCube& c) { c.dimensions.pop_back(); }, 3265, "dimension \"Date\""},
      {"too few levels", [](FakeCube& c) { c.dimensions[1].levels.pop_back(); }, 3265, "3 levels"},
      {"no members", [](FakeCube& c) { c.dimensions[1].levels[3].members.clear(); }, 3265, "Month"},
      {"no parent", [](FakeCube& c) { c.dimensions[1].levels[3].members[1].parent = -1; }, 91,
       "[d].[12]"},
      {"months sorted by their names",
       [](FakeCube& c) {
         c.dimensions[1].levels[3].members[0].name = "12";
         c.dimensions[1].levels[3].members[1].name = "11";
       },
       5, "[d].[12] stands after [d].[11]"},
      {"month 13", [](FakeCube& c) { c.dimensions[1].levels[3].members[1].name = "13"; }, 13,
       "\"13/2009\""},
      {"no measures", [](FakeCube& c) { c.dimensions.erase(c.dimensions.begin()); }, 3265,
       "Measures"},
      {"query refused",
       [](FakeCube& c) {
         c.answer = [](const auto&) -> FakeAnswer { throw Failure(-2147217900, "no"); };
       },
       -2147217900, "no"},
  };
  for (const auto& c : cases) {
    cube.dimensions = {Measures(), MonthDates()};
    memory.boxes.boxes.clear();
    c.spoil(cube);
    EXPECT_EQ(Probe(), c.number) << c.name;
    ASSERT_EQ(memory.boxes.boxes.size(), 1u) << c.name;
    EXPECT_THAT(memory.boxes.boxes[0].text, HasSubstr(c.text)) << c.name;
    EXPECT_THAT(memory.boxes.boxes[0].text,
                HasSubstr("Function : GetMaxDateAndOpBalance\r\nModule : ModeConnectFunctions"));
  }
}

}  // namespace
}  // namespace vok::test
