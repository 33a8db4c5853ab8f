#include "component/query_run.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>

#include "component/cl_me.h"
#include "tests/support/component_host.h"

namespace vok::test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

/// An entry of the log: 80 characters a line.
std::string AsLogged(const std::string& mdx) {
  std::string entry = "\r\n\r\n";
  for (std::size_t at = 0; at < mdx.size(); at += 80) entry += mdx.substr(at, 80) + "\r\n";
  return entry;
}

struct QueryRunTest : ::testing::Test, ComponentHost {
  QueryRunTest() {
    SetPeriod(1, 1, 3, true);
    SetPeriod(2, 4, 4);
  }

  int32_t Run() { return CubtoXls(host, publics, "Sales", "2010", "out"); }

  Value RunComponent() {
    std::string data_source = "Sales", periods = "2010", output = "out";
    return clMe(host, publics).RunQuery(data_source, periods, output);
  }

  /// Query `number` fails; the probe's is the first.
  void Refuse(std::size_t number, const Failure& failure) {
    cube.on_query = [this, number, failure] {
      if (cube.queries.size() == number) throw failure;
    };
  }

  /// Asks for a stop while the cube is opened (0), probed (1) or queried (2, 3); it goes on at
  /// that, and is asked nothing more.
  void StopDuring(std::size_t moment) {
    publics.stop = &stop;
    if (moment == 0) cube.on_open = [this] { stop.Ask(); };
    cube.on_query = [this, moment] {
      EXPECT_LE(cube.queries.size(), moment);
      if (cube.queries.size() == moment) stop.Ask();
    };
  }

  const std::string& LogOf(const std::string& name) {
    return memory.files.files["component\\" + name + ".log"];
  }

  std::vector<std::string> Logs() const {
    std::vector<std::string> logs;
    for (const auto& [path, content] : memory.files.files) {
      if (path.ends_with(".log")) logs.push_back(path.substr(path.find('\\') + 1));
    }
    return logs;
  }

  /// Whether the workbook was opened or made anew, each time.
  std::vector<std::string> Opened() const {
    std::vector<std::string> found;
    for (const std::string& line : sheets.record.lines) {
      if (line == "add" || line.starts_with("open")) found.push_back(line);
    }
    return found;
  }

  QueryStop stop;
  Publics publics;
};

TEST_F(QueryRunTest, WithoutOpeningBalancesOneQueryIsLoggedRunAndWritten) {
  TakeOpeningBalancesAway();
  Money()["Measure3"] = "fACTS";
  for (const char* run : {"first", "second, which starts its lists afresh"}) {
    SCOPED_TRACE(run);
    cube.queries.clear();
    cube.calls.clear();
    sheets.record = {};
    std::string log_when_asked;
    cube.on_query = [&] { log_when_asked = LogOf("MdxQry"); };
    ASSERT_EQ(Run(), 0);
    ASSERT_EQ(cube.queries.size(), 2u);
    EXPECT_THAT(log_when_asked, EndsWith(AsLogged(cube.queries[1])));
    EXPECT_EQ(sheets.record.lines.back(), "commit");
    EXPECT_THAT(cube.queries[1], EndsWith("[All].[Ledger1])"));
    EXPECT_THAT(Logs(), ElementsAre("MdxQry.log"));
    EXPECT_THAT(LogOf("MdxQry"), StartsWith("\r\n\r\nWITH MEMBER [DATE].[Q0] AS \r\n'("));
    EXPECT_THAT(Opened(), ElementsAre("add"));
    EXPECT_EQ(publics.last_run.workbook, "out.xlsX");
    EXPECT_EQ(publics.last_run.rows, 3u);
    EXPECT_EQ(sheets.record.look.title, "Sales, 2010");
    EXPECT_EQ(sheets.record.look.formats.size(), 24u);
    EXPECT_EQ(sheets.record.look.formats.at(5), "#,##0") << "that of the measure";
    EXPECT_EQ(sheets.record.look.formats.at(7), "#,##0.00")
        << "of money that the cube tells none of";
    EXPECT_THAT(publics.cube.CubeMeasures,
                ElementsAre(Value(), Value("Amount"), Value("Units"), Value("Facts")));
    EXPECT_THAT(memory.boxes.boxes, IsEmpty());
    EXPECT_THAT(cube.calls,
                ElementsAre("connect DATA SOURCE=sales.cub;PROVIDER=MSOLAP;Initial Catalog=[QEL];",
                            "close"));
  }
}

TEST_F(QueryRunTest, TheOpeningBalancePassAppendsToTheWorkbookOfTheFirst) {
  ASSERT_EQ(Run(), 0);
  EXPECT_THAT(Logs(), ElementsAre("MdxQry0.log", "MdxQry1.log"));
  EXPECT_THAT(cube.queries[1],
              AllOf(EndsWith("[Opening_Balance].[All].[1])"), HasSubstr("[DATE].[m1]")));
  EXPECT_THAT(cube.queries[2],
              AllOf(EndsWith("[Opening_Balance].[All].[0])"), Not(HasSubstr("[DATE].[m1]"))));
  EXPECT_THAT(Opened(), ElementsAre("add", "open out.xlsX"));
  EXPECT_EQ(std::count(sheets.record.lines.begin(), sheets.record.lines.end(), "commit"), 1);
  EXPECT_EQ(sheets.record.blocks[0].ValueAt(2, 13), Value(34.22));
  EXPECT_EQ(sheets.record.blocks[25].ValueAt(1, 13), Value(9.57));
  EXPECT_EQ(publics.last_run.rows, 3u);
  EXPECT_EQ(publics.last_run.preview.rows.size(), 3u);

  sheets.record = {};
  SetPeriod(1, 5, 7, true, 2009);
  ASSERT_EQ(Run(), 0);
  EXPECT_THAT(Opened(), ElementsAre("add")) << "the first pass left no workbook";
}

TEST_F(QueryRunTest, AnyPeriodThatAsksForOpeningBalancesMeansASecondPass) {
  for (const bool asked : {false, true}) {
    SetPeriod(1, 1, 3, false);
    SetPeriod(12, 4, 4, asked);
    cube.queries.clear();
    ASSERT_EQ(Run(), 0);
    EXPECT_EQ(cube.queries.size(), asked ? 3u : 2u);
    EXPECT_EQ(memory.files.files.contains("component\\MdxQry0.log"), asked);
  }
}

TEST_F(QueryRunTest, PassesWithoutPeriodsAreLoggedAsSuchAndWriteNothing) {
  database.tables["Periods"][0] = {{"SetName", "2010"}, {"includeOpenBalans3", true}};
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(LogOf("MdxQry1"), "\r\n\r\nNo valid MDX\r\n");
  EXPECT_EQ(LogOf("MdxQry0"), "\r\n\r\nNo valid MDX\r\n");
  EXPECT_EQ(publics.last_run.queries, 0U);
  SetPeriod(1, 4, 4);
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(publics.last_run.queries, 1U) << "which finds nothing";
  EXPECT_THAT(sheets.record.lines, IsEmpty());
  EXPECT_EQ(publics.last_run.workbook, "");
}

/// Codes of the system's own are narrower than the platform's numbers, and have a text.
Value AnswerOf(int32_t code) {
  const std::map<int32_t, const char*> texts = {{1111, "Database not Found"},
                                                {2222, "Cann't read Settings"},
                                                {3333, "Connection error"},
                                                {4444, "Invalid date"},
                                                {5555, "Not Valid Measure.Check your Settings"}};
  const auto text = texts.find(code);
  if (text == texts.end()) return Value::Array{code, ""};
  return Value::Array{static_cast<int16_t>(code), text->second};
}

TEST_F(QueryRunTest, EveryFailureHasItsAnswerAndItsReport) {
  const struct {
    const char* name;
    std::function<void(QueryRunTest&)> spoil;
    int32_t code;
    const char* report;  ///< part of the last box, nullptr for none
    const char* cause;   ///< all that is told of it on one line
  } cases[] = {
      {"no database", [](auto& t) { t.memory.files.files.erase("component\\CubToQel.mdb"); }, 1111,
       "Error : 1111\r\n\r\nDatabase not Found\r\n\r\nFunction : CubtoXls\r\nModule : ModCubtoXls",
       "The file \"component\\CubToQel.mdb\" is missing"},
      {"no such sets",
       [](auto& t) {
         t.database.tables["DataSourceInfo"].clear();
         t.database.tables["Periods"].clear();
       },
       2222, "Datasource Definition: Sales  Not Found!!",
       "Datasource Definition: Sales  Not Found!! Periods Definition: 2010  Not Found!!"},
      {"no connection", [](auto& t) { t.cube.on_open = [] { throw Failure(53, "no cube file"); }; },
       3333, "Function : OpenConnection\r\nModule : ModeConnectFunctions", "no cube file"},
      {"no dates", [](auto& t) { t.cube.Change("\"Date\"", "\"Dates\""); }, 4444,
       "Function : GetMaxDateAndOpBalance", "The cube \"QEL\" has no dimension \"Date\""},
      {"unknown measure of a money set without a period",
       [](auto& t) { t.Money()["Measure12"] = "Amounts"; }, 5555, nullptr,
       "cube QEL of sales.cub has no measure \"Amounts\""},
      {"unknown measure of money set 0, which no period shows",
       [](auto& t) {
         t.Money() = {{"SetName", "Sales"}, {"Measure0", "Amounts"}};
         for (int n = 1; n <= 12; ++n) t.Money()["Measure" + std::to_string(n)] = "Amount";
       },
       5555, nullptr, "cube QEL of sales.cub has no measure \"Amounts\""},
      {"only the list's empty element matches", [](auto& t) { t.Money()["Measure0"] = ""; }, 5555,
       nullptr, "cube QEL of sales.cub has no measure \"\""},
      {"query refused", [](auto& t) { t.Refuse(2, Failure(-2147217900, "line 3, column 7")); },
       -2147217900, "line 3, column 7\r\n\r\nFunction : CubtoXls", "line 3, column 7"},
      {"second query refused", [](auto& t) { t.Refuse(3, Failure(7, "out of memory")); }, 7,
       "Function : CubtoXls", "out of memory"},
      {"stopped while the cube is opened", [](auto& t) { t.StopDuring(0); }, kQueryCancelled,
       nullptr, ""},
      {"stopped in the probe", [](auto& t) { t.StopDuring(1); }, kQueryCancelled, nullptr, ""},
      {"stopped in a query", [](auto& t) { t.StopDuring(2); }, kQueryCancelled, nullptr, ""},
      {"stopped in the second query", [](auto& t) { t.StopDuring(3); }, kQueryCancelled, nullptr,
       ""},
      {"stopped when rows are to be written",
       [](auto& t) {
         t.publics.stop = &t.stop;
         t.publics.on_step = [&t](const RunStep& step) {
           if (std::string(step.name) == "workbook") t.stop.Ask();
         };
       },
       kQueryCancelled, nullptr, ""},
      {"workbook refused", [](auto& t) { t.sheets.record.failing = "save out.xlsX 51"; }, 1004,
       "Function : CubtoXls", "refused"},
      {"log refused", [](auto& t) { t.memory.files.refused.insert("component\\MdxQry1.log"); }, 75,
       "Function : CubtoXls",
       "Path/File access error: component\\MdxQry1.log A query is sent only after it is in the "
       "log. Get the right to write there, or choose another settings folder."},
  };
  struct Case : QueryRunTest {
    void TestBody() override {}
  };
  for (const auto& c : cases) {
    for (const bool keep_old : {false, true}) {
      SCOPED_TRACE(c.name);
      Case run;
      run.memory.files.files["out.xlsX"] = "old";
      run.publics.keep_old_workbook = keep_old;
      c.spoil(run);
      EXPECT_EQ(run.RunComponent(), AnswerOf(c.code));
      EXPECT_EQ(run.memory.files.files.contains("out.xlsX"), keep_old);
      EXPECT_THAT(run.sheets.record.lines, Not(Contains("commit")));
      EXPECT_EQ(run.publics.last_run.stopped, c.code == kQueryCancelled);
      EXPECT_EQ(run.publics.last_run.code, c.code);
      EXPECT_EQ(run.publics.last_run.cause, c.cause);
      EXPECT_EQ(run.publics.last_run.workbook, "");
      EXPECT_EQ(run.publics.last_run.preview.rows.size(), 0U);
      EXPECT_EQ(run.memory.boxes.boxes.empty(), c.report == nullptr);
      if (c.report == nullptr) continue;
      EXPECT_THAT(run.memory.boxes.boxes.back().text, HasSubstr(c.report));
    }
  }
}

TEST_F(QueryRunTest, WhatAFailedRunCouldNotTakeBackIsInItsReport) {
  publics.stop = &stop;
  cube.on_query = [this] {  // a program that writes the workbook itself has done so by now
    if (cube.queries.size() != 3) return;
    memory.files.files["out.xlsX"] = "of the first query";
    stop.Ask();
  };
  EXPECT_EQ(Run(), kQueryCancelled);
  EXPECT_EQ(publics.last_run.workbook, "out.xlsX");
  EXPECT_FALSE(publics.last_run.whole);
}

TEST_F(QueryRunTest, AWholeWorkbookStaysWhenTheCubeCannotBeClosed) {
  cube.on_close = [] { throw Failure(-2147467259, "the line is dead"); };
  EXPECT_EQ(Run(), -2147467259);
  EXPECT_EQ(publics.last_run.workbook, "out.xlsX");
  EXPECT_TRUE(publics.last_run.whole);
  EXPECT_EQ(publics.last_run.rows, 3U);
  EXPECT_THAT(memory.boxes.boxes.back().text, HasSubstr("the line is dead"));
}

TEST_F(QueryRunTest, AWorkbookInTheWayIsToldBeforeAnythingElse) {
  memory.files.files = {{"out.xlsX", "old"}};
  memory.files.refused.insert("out.xlsX");
  publics.status.LastError = "of a run before";
  EXPECT_EQ(Run(), 75);
  EXPECT_EQ(publics.status.LastError, "");
  EXPECT_THAT(cube.calls, IsEmpty());
  EXPECT_EQ(memory.files.files["out.xlsX"], "old");
}

/// Advances by a millisecond each time it is asked.
struct TickingClock : FixedClock {
  uint32_t Milliseconds() const override { return ++ticks; }
  mutable uint32_t ticks = 0xFFFFFFF8;
};

TEST_F(QueryRunTest, StepsAreTimedAlsoWhenTheClockWraps) {
  TickingClock clock;
  const Host timed = memory.On(database, cube, sheets, memory.locale, clock);
  TakeOpeningBalancesAway();
  ASSERT_EQ(CubtoXls(timed, publics, "Sales", "2010", "out"), 0);
  const RunReport& report = publics.last_run;
  for (const uint32_t step : {report.settings, report.cube, report.mdx}) EXPECT_EQ(step, 1u);
  EXPECT_EQ(report.grid, 2u) << "its rows, and that there are no more";
  EXPECT_EQ(report.writing, 4u) << "around the grid's readings, and to the disk";
}

}  // namespace
}  // namespace vok::test
