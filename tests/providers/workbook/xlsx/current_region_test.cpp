#include <gtest/gtest.h>

#include "providers/workbook/xlsx/sheet.h"

namespace vok::xlsx {
namespace {

/// A sheet drawn with 'x' for a number, '.' for nothing and '_' for a blank cell with a format.
Sheet Draw(const std::vector<std::string>& picture, uint32_t top = 1) {
  Sheet sheet("Data");
  for (uint32_t row = 0; row < picture.size(); ++row) {
    for (uint32_t column = 0; column < picture[row].size(); ++column) {
      if (picture[row][column] == '.') continue;
      Cell cell = picture[row][column] == 'x' ? Cell::Number(1) : Cell();
      cell.format = 1;
      sheet.Assign({top + row, column + 1}, {&cell, 1});
    }
  }
  return sheet;
}

TEST(CurrentRegion, GrowsUntilItsBorderIsBlankCornersIncluded) {
  const struct {
    const char* fact;
    std::vector<std::string> picture;
    CellPlace start;
    std::size_t rows;
  } cases[] = {
      {"a blank sheet", {}, {1, 1}, 1},
      {"one cell", {"x"}, {1, 1}, 1},
      {"a column", {"x", "x", "x", ".", "x"}, {1, 1}, 3},
      {"labels to the right of a blank start", {"..xx", "xx..", "x..."}, {1, 1}, 3},
      {"a corner", {"x..", ".x.", "..x"}, {1, 1}, 3},
      {"a corner upwards", {"..x", ".x.", "x.."}, {3, 1}, 3},
      {"a blank column between", {"x.x", "x.x", "..x"}, {1, 1}, 2},
      {"a blank column bridged further down", {"x.x", "xxx", "..x"}, {1, 1}, 3},
      {"a snake", {"x....x", "x..x.x", "x.x.xx", ".x.x..", "......", "x....."}, {1, 1}, 4},
      {"a start in the middle", {".x.", "xxx", ".x."}, {2, 2}, 3},
      {"a start beside the block", {"....", ".xx.", ".xx."}, {1, 1}, 3},
      {"formats alone are blank", {"x", "_", "x"}, {1, 1}, 1},
      {"to the left", {"...x", "..x.", "xx.."}, {1, 4}, 3},
  };
  for (const auto& [fact, picture, start, rows] : cases) {
    EXPECT_EQ(CurrentRegionRows(Draw(picture), start), rows) << fact;
  }
}

TEST(CurrentRegion, EndsAtTheSheetsLastRow) {
  EXPECT_EQ(CurrentRegionRows(Draw({"x", "x"}, kMaxRows - 1), {kMaxRows, 1}), 2u);
}

}  // namespace
}  // namespace vok::xlsx
