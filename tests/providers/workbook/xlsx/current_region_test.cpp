#include "providers/workbook/xlsx/current_region.h"

#include <gtest/gtest.h>

#include <string>

namespace vok::xlsx {
namespace {

/// 'x' for a number, '-' for an empty text, '.' for nothing.
std::vector<BlockCell> Draw(const std::string& picture) {
  std::vector<BlockCell> cells(picture.size());
  for (std::size_t i = 0; i < picture.size(); ++i) {
    if (picture[i] == 'x') cells[i].kind = BlockCell::Kind::kNumber;
    if (picture[i] == '-') cells[i].kind = BlockCell::Kind::kText;
  }
  return cells;
}

TEST(CurrentRegion, GrowsUntilItsBorderIsBlankCornersIncluded) {
  const struct {
    const char* fact;
    std::vector<std::string> picture;
    std::size_t rows;
  } cases[] = {
      {"a blank sheet", {}, 1},
      {"one cell", {"x"}, 1},
      {"a column", {"x", "x", "x", ".", "x"}, 3},
      {"labels to the right of a blank start", {"..xx", "xx..", "x..."}, 3},
      {"a corner", {"x..", ".x.", "..x"}, 3},
      {"a blank column between", {"x.x", "x.x", "..x"}, 2},
      {"a blank column bridged further down", {"x.x", "xxx", "..x"}, 3},
      {"a start beside the block", {"....", ".xx.", ".xx."}, 3},
      {"empty texts are blank", {"x", "-", "x"}, 1},
  };
  for (const auto& [fact, picture, rows] : cases) {
    CurrentRegion region;
    for (std::size_t row = 1; row <= picture.size(); ++row) {
      const auto cells = Draw(picture[row - 1]);
      region.Add(row, 1, cells.data(), cells.size());
    }
    EXPECT_EQ(region.rows(), rows) << fact;
  }
}

TEST(CurrentRegion, EndsAtRowsThatAreLeftOutAndGoesOnBelowLabels) {
  const auto cell = Draw("x");
  CurrentRegion region;
  for (const std::size_t row : {2, 3, 1, 4, 6, 7}) region.Add(row, row == 1 ? 12 : 1, &cell[0], 1);
  EXPECT_EQ(region.rows(), 4u);
}

}  // namespace
}  // namespace vok::xlsx
