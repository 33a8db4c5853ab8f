#include "cli/cellset_print.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "cli/estimate.h"
#include "tests/support/fake_cube.h"

namespace vok::cli {
namespace {

using Positions = std::vector<std::vector<AxisMember>>;

using Answer = test::fake_cube::AnswerCellset;

/// Of the hierarchy [H], on its level [L]; the captions are those given, else the last names.
AxisMember Member(const std::string& path, const std::string& caption = "") {
  const std::string last = path.substr(path.rfind('[') + 1);
  const std::string name = last.substr(0, last.size() - 1);
  return {name, caption.empty() ? name : caption, "[H]." + path, "[H].[L]"};
}

AxisMember Measure(const std::string& name) {
  return {name, name, "[Measures].[" + name + "]", "[Measures].[MeasuresLevel]"};
}

const Positions kAmount = {{Measure("Amount")}};

TEST(PrintedCellset, TellsEveryRowFromEveryOther) {
  const struct {
    const char* name;
    test::FakeAnswer answer;
    const char* table;
    const char* csv;
  } cases[] = {
      {"levels below one another, siblings of one caption, a position that comes twice",
       {{kAmount,
         {{Member("[2009]")},
          {Member("[2009].[1].[1]")},
          {Member("[2010].[1]")},
          {Member("[2010].[1]")},
          {Member("[17]", "Cohen")},
          {Member("&[a]]b]", "Cohen")}}},
        {1.0, 2.0, 3.0, 3.0, 4.5, CellState::kEmpty}},
       "H             Amount\n"
       "------------  ------\n"
       "2009               1\n"
       "2009 / 1 / 1       2\n"
       "2010 / 1           3\n"
       "2010 / 1           3\n"
       "Cohen (17)       4.5\n"
       "Cohen (a]b)\n",
       "H,Amount\r\n2009,1\r\n2009 / 1 / 1,2\r\n2010 / 1,3\r\n2010 / 1,3\r\n"
       "Cohen (17),4.5\r\nCohen (a]b),\r\n"},
      {"three axes, two hierarchies on one",
       {{{{Measure("Amount"), Member("[A]")}, {Measure("Amount"), Member("[B]")}},
         {{Member("[r1]")}, {Member("[r2]")}},
         {{Member("[p1]")}, {Member("[p2]")}}},
        {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0}},
       "        Amount  Amount\n"
       "H   H        A       B\n"
       "--  --  ------  ------\n"
       "p1  r1       1       2\n"
       "p1  r2       3       4\n"
       "p2  r1       5       6\n"
       "p2  r2       7       8\n",
       ",,Amount,Amount\r\nH,H,A,B\r\np1,r1,1,2\r\np1,r2,3,4\r\np2,r1,5,6\r\np2,r2,7,8\r\n"},
      {"texts of all scripts, control characters",
       {{kAmount,
         {{Member("[1]", "שָׁלוֹם")},
          {Member("[2]", "日本")},
          {Member("[3]", "a\tb\n\x1B[2J\u202E")},
          {Member("[4]", "a,\"b\"")}}},
        {1.0, 2.0, 3.0, 4.0}},
       "H                      Amount\n"
       "---------------------  ------\n"
       "שָׁלוֹם                        1\n"
       "日本                        2\n"
       "a\\tb\\n\\u001b[2J\\u202e       3\n"
       "a,\"b\"                       4\n",
       "H,Amount\r\nשָׁלוֹם,1\r\n日本,2\r\na\tb\\n\\u001b[2J\\u202e,3\r\n\"a,\"\"b\"\"\",4\r\n"},
      {"no rows",
       {{kAmount, {}}, {}},
       "Amount\n------\nNo cells: axis 1 is empty.\n",
       "Amount\r\n"},
      {"no columns", {{{}, {{Member("[a]")}}}, {}}, "a\nNo cells: axis 0 is empty.\n", "a\r\n"},
      {"no axes, a cell without facts", {{}, {CellState::kEmpty}}, "\n", "\"\"\r\n"},
  };
  for (const auto& [name, answer, table, csv] : cases) {
    const Answer cellset(answer);
    std::ostringstream printed, separated;
    PrintTable(cellset, printed);
    PrintCsv(cellset, separated);
    EXPECT_EQ(printed.str(), table) << name;
    EXPECT_EQ(separated.str(), csv) << name;
  }
}

TEST(PrintedCellset, KeepsTheTypesOfItsCellsInJson) {
  const double infinity = std::numeric_limits<double>::infinity();
  const Positions eight(8, {{"n", "c\t", "[u]", "[l]"}});
  std::ostringstream out;
  PrintJson(Answer({{eight},
                    {0.1,
                     {7, CellState::kInteger},
                     {1, CellState::kLogical},
                     {CellState::kText, "7"},
                     CellState::kEmpty,
                     {CellState::kError, "lost"},
                     -infinity,
                     {CellState::kText, "\xFF"}}}),
            out);
  const std::string json = out.str();
  std::string cells = json.substr(json.find("\"cells\""));
  std::erase_if(cells, [](char c) { return c == ' ' || c == '\n'; });
  EXPECT_EQ(cells, R"("cells":[0.1,7,true,"7",null,"#ERR:lost","-Infinity",")"
                   "\uFFFD\"]}");
  EXPECT_NE(json.find(R"("Caption": "c\t")"), std::string::npos);
}

TEST(Estimates, GoOnForAsLongAsTheStepLastsAndStayWithinIt) {
  Estimate estimate;
  double before = 0, start = 0;
  const struct {
    double begin, end, done, seconds;
  } kSteps[] = {{0, 0.1, 0, 600}, {0.1, 0.6, 0, 3}, {0.1, 0.6, 0.05, 40}, {0.6, 1, 0, 3600}};
  for (const auto& step : kSteps) {
    for (double seconds = 0; seconds < step.seconds; seconds += 0.5) {
      estimate.Tell(step.begin, step.end, step.done, start + seconds);
      const double done = estimate.At(start + seconds + 0.25);
      ASSERT_GT(done, before) << seconds << " s after " << step.begin << ", " << step.done;
      ASSERT_LT(done, step.end);
      before = done;
    }
    start += step.seconds;
  }
  Estimate half;
  half.Tell(0.5, 1, 0, 4);
  EXPECT_NEAR(half.SecondsLeft(5).value_or(0), 3, 1e-9);
  EXPECT_EQ(TimeText(59.2), "1 min 0 s");
  EXPECT_EQ(TimeText(3.1), "4 s");
}

}  // namespace
}  // namespace vok::cli
