#include "cube/probe.h"

#include <gmock/gmock.h>

#include "cube/date_list.h"
#include "cube/requirements.h"
#include "tests/support/cubes/watched_cube.h"
#include "tests/support/failures.h"
#include "tests/support/memory_host.h"

namespace vok::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

struct ProbeTest : ::testing::Test {
  ProbeTest() {
    setting.CubeName = "QEL";
    setting.OBS = "Ledger1";
  }

  int32_t Probe() {
    const auto connection = cube.Connect("", nullptr);
    return GetMaxDateAndOpBalance(host, *connection, setting, state);
  }

  WatchedCube cube;
  MemoryHost memory;
  Host host = memory.On(memory.no_database, cube, memory.no_spreadsheet);
  DataSourceSetting setting;
  CubeState state;
};

constexpr char kMonths[] =
    R"(<Level name="Month" column="m" type="Integer" levelType="TimeMonths"/>)";

/// The dates that begin and end the ledger, told by the month, or by the 28th of each.
TEST_F(ProbeTest, DatesAreReadByMonthOrByDay) {
  for (const bool by_day : {false, true}) {
    WatchedCube dates;
    if (by_day) {
      dates.Change(kMonths, std::string(kMonths) + R"(<Level name="Day" column="28"/>)");
      dates.Change("\n", ",28\n", "dim_date");  // the column is called as each of its days
    }
    const auto connection = dates.Connect("", nullptr);
    ASSERT_EQ(GetMaxDateAndOpBalance(host, *connection, setting, state), 0);
    const int day = by_day ? 28 : 1;
    EXPECT_EQ(state.FirstDate, Date::FromCivil(2009, 1, day));
    EXPECT_EQ(state.LastDate, Date::FromCivil(2010, 6, day));
    EXPECT_EQ(state.CubeDates.size(), 18u);
    EXPECT_EQ(state.CubeDates[13], Date::FromCivil(2010, 2, day));
    EXPECT_EQ(state.CubeDateMembers[13],
              by_day ? "[Date].[2010].[1].[2].[28]" : "[Date].[2010].[1].[2]");
  }
}

/// The names of a server's date members by level, each below the one above it; "-" is not there.
using DateNamesByLevel = std::vector<std::vector<std::string>>;

struct ServedMember : CubeMember {
  ServedMember(const DateNamesByLevel& all, std::size_t l, std::size_t i)
      : names(all), level(l), index(i) {}
  std::string Name() const override { return names[level][index]; }
  std::string Caption() const override { return Name(); }
  std::string UniqueName() const override { return "[" + Name() + "]"; }
  std::unique_ptr<CubeMember> Parent() const override {
    if (names[level - 1][index] == "-") return nullptr;
    return std::make_unique<ServedMember>(names, level - 1, index);
  }
  const DateNamesByLevel& names;
  std::size_t level, index;
};

struct ServedLevel : CubeLevel {
  ServedLevel(const DateNamesByLevel& all, std::size_t l) : names(all), level(l) {}
  std::string Name() const override { return "Level " + std::to_string(level); }
  std::string UniqueName() const override { return Name(); }
  bool IsAll() const override { return level == 0 && names[0][0] == "All"; }
  std::size_t MemberCount() const override { return names[level].size(); }
  std::unique_ptr<CubeMember> MemberAt(std::size_t index) const override {
    return std::make_unique<ServedMember>(names, level, index);
  }
  const DateNamesByLevel& names;
  std::size_t level;
};

struct ServedDates : CubeHierarchy {
  explicit ServedDates(DateNamesByLevel all) : names(std::move(all)) {}
  std::string Name() const override { return "Date"; }
  std::string UniqueName() const override { return "[Date]"; }
  std::size_t LevelCount() const override { return names.size(); }
  std::unique_ptr<CubeLevel> LevelAt(std::size_t index) const override {
    return std::make_unique<ServedLevel>(names, index);
  }
  DateNamesByLevel names;
};

TEST_F(ProbeTest, DatesOfAServerMayLackNamesAndMembers) {
  const ServedDates nameless({{"All"}, {"2009", "2010"}, {"H2", "H1"}, {"", "2"}, {"", "28"}});
  ReadDateRange(memory.locale, nameless, state);
  ReadDateMembers(memory.locale, nameless, state);
  EXPECT_THAT(state.CubeDates, ElementsAre(Date::FromCivil(2010, 2, 28)));
  EXPECT_THAT(state.CubeDateMembers, ElementsAre("[28]"));
  DateNamesByLevel twelve_days(5, std::vector<std::string>(12, "1"));
  for (std::size_t day = 0; day < 12; ++day) twelve_days[4][day] = std::to_string(day + 1);
  for (const char* month : {"1", "2"}) {  // also in halves, as long as these are not whole
    twelve_days[3].back() = month;
    ReadDateMembers(memory.locale, ServedDates(twelve_days), state);
    EXPECT_EQ(state.CubeDates.size(), 12u);
  }
  DateNamesByLevel months_of_quarters(5, std::vector<std::string>(7, "1"));
  for (std::size_t month = 0; month < 7; ++month) {
    months_of_quarters[3][month] = std::to_string(month / 3 + 1);
    months_of_quarters[4][month] = std::to_string(month + 1);
  }
  const ServedDates of_half_years(months_of_quarters);
  EXPECT_EQ(NumberOf([&] { ReadDateMembers(memory.locale, of_half_years, state); }), 3265);
  for (const char* top : {"Ever", "2000"}) {
    ReadDateRange(memory.locale, ServedDates({{top}, {"2009"}, {"H1"}, {"2"}}), state);
    EXPECT_EQ(state.LastDate, Date::FromCivil(2009, 2, 1));
  }
  const ServedDates empty({{"All"}, {"2009"}, {"H1"}, {}});
  EXPECT_EQ(NumberOf([&] { ReadDateRange(memory.locale, empty, state); }), 3265);
  const ServedDates orphan({{"All"}, {"2009"}, {"-"}, {"12"}});
  EXPECT_EQ(NumberOf([&] { ReadDateMembers(memory.locale, orphan, state); }), 91);
}

TEST_F(ProbeTest, AppendsTheMeasuresToTheListAndReplacesTheRest) {
  const char* query =
      "SELECT { [Measures]} ON COLUMNS,  NON Empty{[ActX].[xlFile].[All].[Ledger1].children} ON "
      "ROWS  FROM  [QEL]";
  for (int time = 0; time < 2; ++time) ASSERT_EQ(Probe(), 0);
  EXPECT_THAT(cube.queries, ElementsAre(query, query));
  EXPECT_EQ(state.CubeMeasures,
            (Value::Array{Value(), "Amount", "Units", "Facts", "Amount", "Units", "Facts"}));
  EXPECT_EQ(state.CubeDates.size(), 18u);
  EXPECT_THAT(state.ObsChildren, ElementsAre("File2"));
}

TEST_F(ProbeTest, FlagsComeFromCountsAndAreClearedForCubesWithoutTheDimensions) {
  const struct {
    const char *name, *from, *to;
    bool opening_balance, actx;
  } cases[] = {
      {"both", "QEL", "QEL", true, true},
      {"no opening balances", "\"Opening_Balance\" foreign", "\"Opening\" foreign", false, true},
      {"no level of files", R"(<Level name="File" column="file"/>)", "", true, false},
  };
  for (const auto& c : cases) {
    WatchedCube other;
    other.Change(c.from, c.to);
    state.HasOpeningBalance = !c.opening_balance;
    state.HasActX = !c.actx;
    const auto connection = other.Connect("", nullptr);
    ASSERT_EQ(GetMaxDateAndOpBalance(host, *connection, setting, state), 0) << c.name;
    EXPECT_EQ(state.HasOpeningBalance, c.opening_balance) << c.name;
    EXPECT_EQ(state.HasActX, c.actx) << c.name;
  }
}

TEST_F(ProbeTest, FailuresAreReportedAndTheirNumberReturned) {
  const struct {
    std::function<void(WatchedCube&)> spoil;
    int32_t number;
    const char* text;
  } cases[] = {
      {[](auto& c) { c.Change("\"Date\"", "\"Dates\""); }, 3265, "dimension \"Date\""},
      {[](auto& c) { c.Change(kMonths, ""); }, 3265, "3 levels"},
      {[](auto& c) {
         c.Change("\"TimeMonths\"/>", "\"Regular\"/><Level name=\"Day\" column=\"m\"/>");
         c.Change("hasAll=\"true\" allMemberName=\"All\" primaryKey=\"date_id\"",
                  "hasAll=\"false\" primaryKey=\"date_id\"");
       },
       3265, "[Date] has no all level"},
      {[](auto& c) { c.Change("2010,1,1", "2010,1,13", "dim_date"); }, 13, "\"13/2010\""},
      {[](auto& c) { c.on_query = [] { throw Failure(-2147217900, "no"); }; }, -2147217900, "no"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    WatchedCube spoilt;
    c.spoil(spoilt);
    memory.boxes.boxes.clear();
    const auto connection = spoilt.Connect("", nullptr);
    EXPECT_EQ(GetMaxDateAndOpBalance(host, *connection, setting, state), c.number);
    ASSERT_EQ(memory.boxes.boxes.size(), 1u);
    EXPECT_THAT(memory.boxes.boxes[0].text, HasSubstr(c.text));
    EXPECT_THAT(memory.boxes.boxes[0].text, HasSubstr("\"vokcube cube check\" lists all"));
    EXPECT_THAT(memory.boxes.boxes[0].text,
                HasSubstr("Function : GetMaxDateAndOpBalance\r\nModule : ModeConnectFunctions"));
  }
}

TEST_F(ProbeTest, AllThatACubeLacksIsListedWithTheLineThatMendsIt) {
  const struct {
    const char *from, *to;
    std::vector<std::string> words;  ///< of each lack and its line, in order
  } cases[] = {
      {"QEL", "QEL", {}},
      {"\"QEL\"", "\"Books\"", {"\"Books\" does not end in QEL", "<Cube name=\"BooksQEL\">"}},
      {"\"Date\"", "\"Dates\"", {"no dimension \"Date\"", "<Dimension name=\"Date\""}},
      {"hasAll=\"true\" allMemberName=\"All\" primaryKey=\"date_id\"",
       "hasAll=\"false\" primaryKey=\"date_id\"",
       {"[Date] has no all level", "hasAll=\"true\""}},
      {kMonths, "", {"has 3 levels", "<Level name=\"Year\""}},
      {"column=\"q\" type=\"Integer\"", "column=\"m\"", {"stands after", "ordinalColumn"}},
      {"q\" type=\"Integer\" levelType=\"TimeQuarters\"/>\n        <Level name=\"Month\" "
       "column=\"m",
       "m\" type=\"Integer\"/><Level name=\"Month\" column=\"q",
       {"[Date].[2009].[1].[1] and [Date].[2009].[2].[1]", "<Level name=\"Year\""}},
      {"<Level name=\"Quarter\"",
       "<Level name=\"Half\" column=\"q\"/><Level name=\"Quarter\"",
       {"\"Quarter\", is declared", "<Level name=\"Year\""}},
      {"m\" type=\"Integer\" levelType=\"TimeMonths",
       "q\" type=\"Integer\"/><Level name=\"Day\" column=\"m\" type=\"Integer",
       {"\"Day\", has numbers of 1 to 12 that", "<Level name=\"Year\""}},
      {"name=\"QeL\" hasAll",
       "name=\"Lines\" hasAll",
       {"no hierarchy \"QeL\"", "<Hierarchy name=\"QeL\""}},
      {"\"QeL\" type", "\"Line\" type", {"no dimension \"QeL\"", "<Dimension name=\"QeL\""}},
      {"\"ActX\"", "\"Acts\"", {"no dimension \"ActX\"", "<Dimension name=\"ActX\""}},
      {"xlFile", "Files", {"no hierarchy \"xlFile\"", "<Hierarchy name=\"xlFile\""}},
      {"allMemberName=\"All\" allLevelName",
       "allLevelName",
       {"no member [ActX].[xlFile].[All]", "allMemberName=\"All\""}},
      {"allMemberName=\"All\" primaryKey=\"ob\"",
       "primaryKey=\"ob\"",
       {"[Opening_Balance].[All].[0]", "Opening_Balance", "[Opening_Balance].[All].[1]", ""}},
      {"<Measure name=\"", "<Measure name=\"Quantity of ", {"no measure without", "<Measure name"}},
      {"e name=\"Amount", "e name=\"A]", {"name the measure \"A]\"", "<Measure name"}},
      {"e name=\"Amount", "e name=\"A''", {"name the measure \"A''\"", "<Measure name"}},
      {"e name=\"Amount", "e name=\"Owner's", {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.to);
    WatchedCube other;
    other.Change("defaultMeasure=\"Amount\"", "").Change(c.from, c.to);
    const auto connection = other.Connect("", nullptr);
    const auto lacks =
        FindLacks(memory.locale, *connection, connection->Structure()->CubeAt(0)->Name());
    ASSERT_EQ(2 * lacks.size(), c.words.size()) << (lacks.empty() ? "" : lacks[0].what);
    for (std::size_t i = 0; i < lacks.size(); ++i) {
      EXPECT_THAT(lacks[i].what, HasSubstr(c.words[2 * i]));
      EXPECT_THAT(lacks[i].mend, HasSubstr(c.words[2 * i + 1]));
    }
  }
  WatchedCube many;
  many.Change("\"Date\"", "\"D\"").Change("\"QeL\" type", "\"L\" type").Change("\"ActX\"", "\"A\"");
  EXPECT_EQ(FindLacks(memory.locale, *many.Connect("", nullptr), "QEL").size(), 3u);
}

}  // namespace
}  // namespace vok::test
