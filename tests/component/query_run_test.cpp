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

/// One row, one column: Q0.
FakeAnswer OneCell(double value) {
  const AxisMember column{"Q0", "Q0", "", ""};
  const AxisMember row{"", "a\tb", "", ""};
  return {{{{column}}, {{row}}}, {value}};
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

  /// Answers by the pass: the first two queries after the probe's.
  void Answer(FakeAnswer first, FakeAnswer second) {
    cube.answer = [this, first, second](const std::string&) -> FakeAnswer {
      if (cube.queries.size() == 1) return {{{}, {}}, {}};
      return cube.queries.size() == 2 ? first : second;
    };
  }

  /// The workbook appears at its path with the first pass, as from a program that writes it itself.
  void WriteItself() {
    cube.answer = [this, before = cube.answer](const std::string& mdx) {
      if (cube.queries.size() == 3) memory.files.files["out.xlsX"] = "of the first query";
      return before(mdx);
    };
  }

  /// Asks for a stop while the cube is opened (0), probed (1) or queried (2, 3); it goes on at
  /// that.
  void StopDuring(std::size_t moment) {
    publics.stop = &stop;
    AddOpeningBalance();
    if (moment == 0) cube.on_open = [this] { stop.Ask(); };
    cube.answer = [this, moment](const std::string&) -> FakeAnswer {
      EXPECT_LE(cube.queries.size(), moment);
      if (cube.queries.size() == moment) stop.Ask();
      return cube.queries.size() == 1 ? FakeAnswer{{{}, {}}, {}} : OneCell(1);
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
  Money()["Measure3"] = "uNITS";
  for (const char* run : {"first", "second, which starts its lists afresh"}) {
    SCOPED_TRACE(run);
    cube.queries.clear();
    cube.connection_calls.clear();
    sheets.record = {};
    std::string log_when_asked;
    cube.answer = [&](const std::string&) -> FakeAnswer {
      log_when_asked = LogOf("MdxQry");
      return cube.queries.size() == 1 ? FakeAnswer{{{}, {}}, {}} : OneCell(5);
    };
    ASSERT_EQ(Run(), 0);
    ASSERT_EQ(cube.queries.size(), 2u);
    EXPECT_THAT(log_when_asked, EndsWith(AsLogged(cube.queries[1])));
    EXPECT_EQ(sheets.record.lines.back(), "commit");
    EXPECT_THAT(cube.queries[1], EndsWith("[All].[Ledger1])"));
    EXPECT_THAT(Logs(), ElementsAre("MdxQry.log"));
    EXPECT_THAT(LogOf("MdxQry"), StartsWith("\r\n\r\nWITH MEMBER [DATE].[Q0] AS \r\n'("));
    EXPECT_THAT(Opened(), ElementsAre("add"));
    EXPECT_EQ(sheets.record.blocks[0].At(2, 12), Value(5.0));
    EXPECT_EQ(publics.last_run.workbook, "out.xlsX");
    EXPECT_EQ(publics.last_run.rows, 1u);
    EXPECT_THAT(publics.cube.CubeMeasures, ElementsAre(Value(), Value("Amount"), Value("Units")));
    EXPECT_THAT(memory.boxes.boxes, IsEmpty());
    EXPECT_THAT(cube.connection_calls,
                ElementsAre("connect DATA SOURCE=sales.cub;PROVIDER=MSOLAP;Initial Catalog=[QEL];",
                            "close"));
  }
}

TEST_F(QueryRunTest, TheOpeningBalancePassAppends) {
  AddOpeningBalance();
  Answer(OneCell(5), OneCell(6));
  ASSERT_EQ(Run(), 0);
  EXPECT_THAT(Logs(), ElementsAre("MdxQry0.log", "MdxQry1.log"));
  EXPECT_THAT(cube.queries[1],
              AllOf(EndsWith("[Opening_Balance].[All].[1])"), HasSubstr("[DATE].[m1]")));
  EXPECT_THAT(cube.queries[2],
              AllOf(EndsWith("[Opening_Balance].[All].[0])"), Not(HasSubstr("[DATE].[m1]"))));
  EXPECT_THAT(Opened(), ElementsAre("add", "open out.xlsX"));
  EXPECT_EQ(std::count(sheets.record.lines.begin(), sheets.record.lines.end(), "commit"), 1);
  EXPECT_EQ(sheets.record.blocks[0].rows, 2u);
  EXPECT_EQ(sheets.record.blocks[25].rows, 1u);
  EXPECT_EQ(sheets.record.blocks[25].At(1, 12), Value(6.0));
  EXPECT_EQ(publics.last_run.rows, 2u);
  EXPECT_EQ(publics.last_run.preview.rows.size(), 2u);

  sheets.record = {};
  cube.queries.clear();
  Answer({{{}, {}}, {}}, OneCell(6));
  ASSERT_EQ(Run(), 0);
  EXPECT_THAT(Opened(), ElementsAre("add")) << "the first pass left no workbook";
  EXPECT_EQ(sheets.record.blocks[0].At(2, 12), Value(6.0));
}

TEST_F(QueryRunTest, AnyPeriodThatAsksForOpeningBalancesMeansASecondPass) {
  AddOpeningBalance();
  SetPeriod(1, 1, 3, false);
  Answer(OneCell(5), {});
  ASSERT_EQ(Run(), 0);
  EXPECT_THAT(Logs(), ElementsAre("MdxQry1.log"));
  EXPECT_EQ(cube.queries.size(), 2u);

  SetPeriod(12, 4, 4, true);
  cube.queries.clear();
  Answer(OneCell(5), OneCell(6));
  ASSERT_EQ(Run(), 0);
  EXPECT_THAT(Logs(), ElementsAre("MdxQry0.log", "MdxQry1.log"));
  EXPECT_EQ(cube.queries.size(), 3u);
}

TEST_F(QueryRunTest, PassesWithoutPeriodsAreLoggedAsSuch) {
  database.tables["Periods"][0] = {{"SetName", "2010"}, {"includeOpenBalans3", true}};
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(LogOf("MdxQry"), "\r\n\r\nNo valid MDX\r\n");
  EXPECT_EQ(publics.last_run.queries, 0U);
  AddOpeningBalance();
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(LogOf("MdxQry1"), "\r\n\r\nNo valid MDX\r\n");
  EXPECT_EQ(LogOf("MdxQry0"), "\r\n\r\nNo valid MDX\r\n");
  EXPECT_THAT(sheets.record.lines, IsEmpty());
  EXPECT_FALSE(publics.settings.periods.Period(3).IncludeOpenBalance);
}

TEST_F(QueryRunTest, AnAxisWithoutPositionsWritesNoWorkbook) {
  const FakeAnswer full = OneCell(1);
  for (const FakeAnswer& answer : {FakeAnswer{{{}, full.axes[1]}, {}}, {{full.axes[0], {}}, {}}}) {
    cube.queries.clear();
    Answer(answer, {});
    EXPECT_EQ(Run(), 0);
    EXPECT_THAT(sheets.record.lines, IsEmpty());
    EXPECT_EQ(publics.last_run.workbook, "");
    EXPECT_EQ(publics.last_run.queries, 1U);
  }
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
  } cases[] = {
      {"no database", [](auto& t) { t.memory.files.files.erase("component\\CubToQel.mdb"); }, 1111,
       "Error : 1111\r\n\r\nDatabase not Found\r\n\r\nFunction : CubtoXls\r\nModule : ModCubtoXls"},
      {"no such data source", [](auto& t) { t.database.tables["DataSourceInfo"].clear(); }, 2222,
       "Datasource Definition: Sales  Not Found!!"},
      {"no connection", [](auto& t) { t.cube.on_open = [] { throw Failure(53, "no cube file"); }; },
       3333, "Function : OpenConnection\r\nModule : ModeConnectFunctions"},
      {"no dates", [](auto& t) { t.cube.dimensions.pop_back(); }, 4444,
       "Function : GetMaxDateAndOpBalance"},
      {"unknown measure of a money set without a period",
       [](auto& t) { t.Money()["Measure12"] = "Amounts"; }, 5555, nullptr},
      {"unknown measure of money set 0, which no period shows",
       [](auto& t) {
         t.Money() = {{"SetName", "Sales"}, {"Measure0", "Amounts"}};
         for (int n = 1; n <= 12; ++n) t.Money()["Measure" + std::to_string(n)] = "Amount";
       },
       5555, nullptr},
      {"only the list's empty element matches", [](auto& t) { t.Money()["Measure0"] = ""; }, 5555,
       nullptr},
      {"query refused",
       [](auto& t) {
         t.cube.answer = [&t](const auto&) -> FakeAnswer {
           if (t.cube.queries.size() > 1) throw Failure(-2147217900, "line 3, column 7");
           return {{{}, {}}, {}};
         };
       },
       -2147217900, "line 3, column 7\r\n\r\nFunction : CubtoXls"},
      {"second query refused",
       [](auto& t) {
         t.AddOpeningBalance();
         t.cube.answer = [&t](const auto&) -> FakeAnswer {
           if (t.cube.queries.size() == 1) return {{{}, {}}, {}};
           if (t.cube.queries.size() == 2) return OneCell(1);
           throw Failure(7, "out of memory");
         };
       },
       7, "Function : CubtoXls"},
      {"stopped while the cube is opened", [](auto& t) { t.StopDuring(0); }, kQueryCancelled,
       nullptr},
      {"stopped in the probe", [](auto& t) { t.StopDuring(1); }, kQueryCancelled, nullptr},
      {"stopped in a query", [](auto& t) { t.StopDuring(2); }, kQueryCancelled, nullptr},
      {"stopped in the second query", [](auto& t) { t.StopDuring(3); }, kQueryCancelled, nullptr},
      {"three axes",
       [](auto& t) {
         t.Answer({{{{}}, {{}}, {}}, {}}, {});
       },
       445, "Function : CubtoXls"},
      {"workbook refused",
       [](auto& t) {
         t.Answer(OneCell(1), {});
         t.sheets.record.failing = "save out.xlsX 51";
       },
       1004, "Function : CubtoXls"},
      {"log refused", [](auto& t) { t.memory.files.refused.insert("component\\MdxQry.log"); }, 75,
       "Function : CubtoXls"},
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
      EXPECT_EQ(run.publics.last_run.workbook, "");
      EXPECT_EQ(run.publics.last_run.preview.rows.size(), 0U);
      EXPECT_EQ(run.memory.boxes.boxes.empty(), c.report == nullptr);
      if (c.report == nullptr) continue;
      EXPECT_THAT(run.memory.boxes.boxes.back().text, HasSubstr(c.report));
    }
  }
}

TEST_F(QueryRunTest, WhatAFailedRunCouldNotTakeBackIsInItsReport) {
  StopDuring(3);
  WriteItself();
  EXPECT_EQ(Run(), kQueryCancelled);
  EXPECT_EQ(publics.last_run.workbook, "out.xlsX");
  EXPECT_FALSE(publics.last_run.whole);
}

TEST_F(QueryRunTest, AWholeWorkbookStaysWhenTheCubeCannotBeClosed) {
  AddOpeningBalance();
  Answer(OneCell(5), OneCell(6));
  cube.on_close = [] { throw Failure(-2147467259, "the line is dead"); };
  EXPECT_EQ(Run(), -2147467259);
  EXPECT_EQ(publics.last_run.workbook, "out.xlsX");
  EXPECT_TRUE(publics.last_run.whole);
  EXPECT_EQ(publics.last_run.rows, 2U);
  EXPECT_THAT(memory.boxes.boxes.back().text, HasSubstr("the line is dead"));
}

TEST_F(QueryRunTest, AWorkbookInTheWayIsToldBeforeAnythingElse) {
  memory.files.files = {{"out.xlsX", "old"}};
  memory.files.refused.insert("out.xlsX");
  publics.status.LastError = "of a run before";
  EXPECT_EQ(Run(), 75);
  EXPECT_EQ(publics.status.LastError, "");
  EXPECT_THAT(cube.connection_calls, IsEmpty());
  EXPECT_EQ(memory.files.files["out.xlsX"], "old");
}

/// Advances by a millisecond each time it is asked.
struct TickingClock : FixedClock {
  uint32_t Milliseconds() const override { return ++ticks; }
  mutable uint32_t ticks = 0xFFFFFFF8;
};

TEST_F(QueryRunTest, StepsAreTimedAlsoWhenTheClockWraps) {
  TickingClock clock;
  const Host timed{host.component, memory.files, memory.registry, memory.locale, clock,
                   memory.boxes,   database,     provider,        sheets};
  Answer(OneCell(5), {});
  ASSERT_EQ(CubtoXls(timed, publics, "Sales", "2010", "out"), 0);
  const RunReport& report = publics.last_run;
  for (const uint32_t step : {report.settings, report.cube, report.mdx, report.grid}) {
    EXPECT_EQ(step, 1u);
  }
  EXPECT_EQ(report.writing, 2u) << "to the sheet, and to the disk";
}

}  // namespace
}  // namespace vok::test
