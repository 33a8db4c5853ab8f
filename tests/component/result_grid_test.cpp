#include "component/result_grid.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "component/query_run.h"
#include "tests/support/component_host.h"
#include "tests/support/fake_cube.h"

namespace vok::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using Texts = std::vector<std::string>;

/// The cells of each row of the block, "." for an empty one and "-" for an empty text.
void Show(const CellBlock& grid, Texts& lines) {
  for (std::size_t row = 1; row <= grid.rows(); ++row) {
    std::string& line = lines.emplace_back();
    for (std::size_t column = 1; column <= grid.columns(); ++column) {
      const Value cell = grid.ValueAt(row, column);
      const std::string text = cell.ToText();
      line += cell.IsEmpty() ? "." : text.empty() ? "-" : text;
    }
  }
}

/// The grid over periods of these numbers, of cells 1, 2, 3 and so on, read so many rows at a time.
/// A row's members have the captions, a column's is named.
Texts Build(const std::vector<int16_t>& numbers, const Texts& columns,
            const std::vector<Texts>& rows, bool append = true, std::size_t at_once = 1) {
  FakeAnswer answer{{{}, {}}, {}};
  for (const std::string& name : columns) answer.axes[0].push_back({{name, name, "", ""}});
  for (const Texts& captions : rows) {
    auto& position = answer.axes[1].emplace_back();
    for (const std::string& caption : captions) position.push_back({"", caption, "", ""});
  }
  for (std::size_t cell = 1; cell <= rows.size() * columns.size(); ++cell) {
    answer.cells.emplace_back(static_cast<double>(cell));
  }
  std::vector<QueryPeriod> periods;
  for (const int16_t number : numbers) periods.emplace_back().PeriodNumber = number;
  const fake_cube::AnswerCellset cellset(std::move(answer));
  ResultGrid grid(cellset, periods, append);
  Texts lines;
  for (CellBlock block = grid.Next(at_once); block.rows() > 0; block = grid.Next(at_once)) {
    Show(block, lines);
  }
  return lines;
}

TEST(ResultGrid, CaptionsAndCellsStandInTheirColumns) {
  const struct {
    const char* fact;
    Texts grid;
    Texts lines;
  } cases[] = {
      {"columns follow their names, not their places",
       Build({2, 5}, {"m1", "Q0"}, {{"a"}, {"b"}}),
       {"0a...........2......1", "0b...........4......3"}},
      {"the first and the last period",
       Build({1, 12}, {"Q0", "m0", "Q1", "m1"}, {{""}}),
       {"0-.........12....................34"}},
      {"the first query leaves row 1 to the labels",
       Build({2}, {"Q0"}, {{"a"}}, false),
       {"...............", "0a...........1."}},
      {"blocks that end within the rows",
       Build({1}, {"Q0"}, {{"a"}, {"b"}, {"c"}, {"d"}}, false, 3),
       {".............", "0a.........1.", "0b.........2.", "0c.........3.", "0d.........4."}},
      {"each row member makes it wider",
       Build({1}, {"Q0"}, {{"a", "b", "c"}}),
       {"000c.......1..."}},
      {"ten fields", Build({1}, {"Q0"}, {{"a\tb\tc\td\te\tf\tg\th\ti\tj"}}), {"0abehijfgcd1."}},
      {"three fields", Build({1}, {"Q0"}, {{"a\tb\tc"}}), {"0ab......c.1."}},
      {"empty fields", Build({1}, {"Q0"}, {{"a\t\tc\t"}}), {"0a-......c-1."}},
      {"more fields",
       Build({1}, {"Q0"}, {{"a\tb\tc\td\te\tf\tg\th\ti\tj\tk\tl"}}),
       {"0abehijfgcd1."}},
      {"two row members", Build({2}, {"Q0"}, {{"a\tb\tc\td", "x\ty\tz\tw"}}), {"00xy.....czw.1.."}},
      {"letters", Build({1}, {"Q0"}, {{"\u05D0\t\u0416"}}), {"0\u05D0\u0416........1."}},
  };
  for (const auto& [fact, grid, lines] : cases) EXPECT_EQ(grid, lines) << fact;
}

TEST(ResultGrid, AColumnThatWasNotAskedForIsAFailure) {
  for (const char* name : {"Q2", "m2", "x0", "Q", "Q-1", "Q0 ", "Q 0", "", "Qm0"}) {
    EXPECT_THROW(Build({2, 5}, {name}, {{""}}), Failure) << name;
  }
}

TEST(SheetValue, IsANumberOtherThanZeroOrBlank) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double number : {0.1, -1e300, std::numeric_limits<double>::denorm_min(), -7.0}) {
    EXPECT_TRUE(IsShown(CellState::kNumber, number) && IsShown(CellState::kInteger, number));
  }
  for (const double number : {0.0, -0.0, std::nan(""), kInfinity, -kInfinity}) {
    EXPECT_FALSE(IsShown(CellState::kNumber, number)) << number;
  }
  for (const CellState state :
       {CellState::kEmpty, CellState::kText, CellState::kLogical, CellState::kError}) {
    EXPECT_FALSE(IsShown(state, 1)) << static_cast<int>(state);
  }
}

TEST(DisplayCellset, RefusesAThirdAxisWithAReport) {
  ComponentHost machine;
  Publics publics;
  const fake_cube::AnswerCellset cellset({{{}, {}, {}}, {}});
  EXPECT_THROW(DisplayCellsetOmvinExcel(machine.host, publics, cellset, RunOutput(), false),
               Failure);
  ASSERT_EQ(machine.memory.boxes.boxes.size(), 1u);
  EXPECT_THAT(machine.memory.boxes.boxes[0].text,
              AllOf(HasSubstr("Cellsets with more than two axes are not supported by the Pleipi."),
                    HasSubstr("Function : DisplayCellsetOmvinExcel\r\nModule : ModXls")));
  EXPECT_TRUE(machine.sheets.record.lines.empty());
}

}  // namespace
}  // namespace vok::test
