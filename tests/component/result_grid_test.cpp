#include "component/result_grid.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "tests/support/component_host.h"

namespace vok::test {
namespace {

using ::testing::HasSubstr;
using Positions = std::vector<std::vector<AxisMember>>;

Positions Named(const std::vector<std::string>& names) {
  Positions positions;
  for (const std::string& name : names) positions.push_back({{name, name, "", ""}});
  return positions;
}

Positions Captioned(const std::vector<std::vector<std::string>>& rows) {
  Positions positions;
  for (const auto& captions : rows) {
    auto& position = positions.emplace_back();
    for (const std::string& caption : captions) position.push_back({"", caption, "", ""});
  }
  return positions;
}

struct ResultGridTest : ::testing::Test {
  ResultGridTest() { Take({2, 5}); }

  void Take(const std::vector<int16_t>& numbers) {
    periods.clear();
    for (const int16_t number : numbers) periods.emplace_back().PeriodNumber = number;
  }

  CellBlock Build(const Positions& columns, const Positions& rows, std::vector<Value> cells,
                  bool append = true) {
    const fake_cube::AnswerCellset cellset(cube, {{columns, rows}, std::move(cells)});
    return BuildResultGrid(cellset, periods, append);
  }

  FakeCube cube;
  std::vector<QueryPeriod> periods;
};

TEST_F(ResultGridTest, ColumnsFollowTheirNamesNotTheirPlaces) {
  const CellBlock grid =
      Build(Named({"m1", "Q0"}), Captioned({{"a"}, {"b"}}), {1.5, 2.0, 3.0, 4.0});
  ASSERT_EQ(grid.rows, 2u);
  ASSERT_EQ(grid.columns, 21u);  // to the money of period 5
  EXPECT_EQ(grid.At(1, 21), Value(1.5));
  EXPECT_EQ(grid.At(1, 14), Value(2.0));
  EXPECT_EQ(grid.At(2, 21), Value(3.0));
  EXPECT_EQ(grid.At(2, 14), Value(4.0));
  for (const std::size_t column : {12u, 13u, 15u, 16u, 17u, 18u, 19u, 20u}) {
    EXPECT_TRUE(grid.At(1, column).IsEmpty()) << column;
  }
}

TEST_F(ResultGridTest, TheFirstAndLastPeriodHaveTheirColumns) {
  Take({1, 12});
  const CellBlock grid =
      Build(Named({"Q0", "m0", "Q1", "m1"}), Captioned({{""}}), {1., 2., 3., 4.});
  ASSERT_EQ(grid.columns, 35u);
  EXPECT_EQ(grid.At(1, 12), Value(1.0));
  EXPECT_EQ(grid.At(1, 13), Value(2.0));
  EXPECT_EQ(grid.At(1, 34), Value(3.0));
  EXPECT_EQ(grid.At(1, 35), Value(4.0));
}

TEST_F(ResultGridTest, AColumnThatWasNotAskedForIsAFailure) {
  for (const char* name : {"Q2", "m2", "x0", "Q", "Q-1", "Q0 ", "Q 0", "", "Qm0"}) {
    EXPECT_THROW(Build(Named({name}), Captioned({{""}}), {1.0}), Failure) << name;
  }
}

TEST_F(ResultGridTest, TheFirstQueryLeavesRowOneToTheLabels) {
  const CellBlock grid = Build(Named({"Q0"}), Captioned({{"a"}}), {7.0}, false);
  ASSERT_EQ(grid.rows, 2u);
  for (std::size_t column = 1; column <= grid.columns; ++column) {
    EXPECT_TRUE(grid.At(1, column).IsEmpty());
  }
  EXPECT_EQ(grid.At(2, 1), Value("0"));
  EXPECT_EQ(grid.At(2, 14), Value(7.0));
}

/// The texts of a row's first 13 columns, "." for an empty one.
std::string Headers(const CellBlock& grid) {
  std::string texts;
  for (std::size_t column = 1; column <= 13; ++column) {
    const Value& cell = grid.At(1, column);
    texts += (cell.IsEmpty() ? "." : cell.ToText()) + (column < 13 ? "|" : "");
  }
  return texts;
}

TEST_F(ResultGridTest, CaptionsAreUnpackedIntoTheirColumns) {
  const struct {
    std::vector<std::string> captions;
    const char* expected;
  } cases[] = {
      {{"a\tb\tc\td\te\tf\tg\th\ti\tj"}, "0|a|b|e|h|i|j|f|g|c|d|.|."},
      {{"a\tb\tc"}, "0|a|b|.|.|.|.|.|.|c|.|.|."},
      {{""}, "0||.|.|.|.|.|.|.|.|.|.|."},
      {{"a\t\tc\t"}, "0|a||.|.|.|.|.|.|c||.|."},
      {{"a\tb\tc\td\te\tf\tg\th\ti\tj\tk\tl"}, "0|a|b|e|h|i|j|f|g|c|d|.|."},
      {{"a\tb\tc\td", "x\ty\tz\tw"}, "0|0|x|y|.|.|.|.|.|c|z|w|."},
      {{"\u05D0\t\u0416"}, "0|\u05D0|\u0416|.|.|.|.|.|.|.|.|.|."},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Headers(Build(Named({"Q1"}), Captioned({c.captions}), {1.0})), c.expected);
  }
}

TEST_F(ResultGridTest, TheGridIsWiderByEachRowMember) {
  Take({1});
  EXPECT_EQ(Build(Named({"Q0"}), Captioned({{"a", "b", "c"}}), {1.0}).columns, 15u);
}

TEST(SheetValue, IsANumberOtherThanZeroOrBlank) {
  const struct {
    Value cell;
    Value expected;
  } cases[] = {
      {0.1, 0.1},
      {-1e300, -1e300},
      {std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::denorm_min()},
      {int32_t{7}, 7.0},
      {int16_t{-7}, -7.0},
      {0.0, ""},
      {-0.0, ""},
      {int32_t{0}, ""},
      {Value(), ""},
      {Null{}, ""},
      {"12", ""},
      {true, ""},
      {CellError{"division"}, ""},
      {std::nan(""), ""},
      {std::numeric_limits<double>::infinity(), ""},
      {-std::numeric_limits<double>::infinity(), ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(SheetValue(c.cell), c.expected) << "type " << c.cell.storage().index();
  }
}

TEST(DisplayCellset, RefusesAThirdAxisWithAReport) {
  ComponentHost machine;
  Publics publics;
  const fake_cube::AnswerCellset cellset(machine.cube, {{{}, {}, {}}, {}});
  EXPECT_THROW(DisplayCellsetOmvinExcel(machine.host, publics, cellset, "out", false), Failure);
  ASSERT_EQ(machine.memory.boxes.boxes.size(), 1u);
  EXPECT_THAT(machine.memory.boxes.boxes[0].text,
              HasSubstr("Cellsets with more than two axes are not supported by the Pleipi."));
  EXPECT_THAT(machine.memory.boxes.boxes[0].text,
              HasSubstr("Function : DisplayCellsetOmvinExcel\r\nModule : ModXls"));
  EXPECT_TRUE(machine.sheets.record.lines.empty());
}

}  // namespace
}  // namespace vok::test
