#include "ui/win32/grid_layout.h"

#include <gtest/gtest.h>

namespace vok::windows {

void PrintTo(const Area& place, std::ostream* out) {
  *out << place.left << "," << place.top << " " << place.width << "x" << place.height;
}

namespace {

TEST(Grid, GivesEachItemItsPlace) {
  const struct {
    const char* name;
    std::vector<GridItem> items;
    Extent least;
    Extent more;  ///< than the least
    std::vector<Area> places;
  } rows[] = {
      {"nothing", {}, {0, 0}, {9, 9}, {}},
      {"a column is as wide as its widest, and no gap is where nothing stands",
       {{.cell = {0, 0}, .least = {10, 5}},
        {.cell = {3, 0}, .least = {30, 7}},
        {.cell = {3, 2}, .least = {20, 5}}},
       {54, 16},
       {0, 0},
       {{0, 0, 30, 5}, {0, 9, 30, 7}, {34, 10, 20, 5}}},
      {"what is left over goes to those that grow, each its share",
       {{.cell = {0, 0}, .least = {10, 5}, .grows = true},
        {.cell = {0, 1}, .least = {10, 5}},
        {.cell = {0, 2}, .least = {10, 5}, .grows = true},
        {.cell = {1, 0, 3}, .least = {20, 5}, .grows_down = true, .fills_height = true}},
       {38, 14},
       {11, 6},
       {{0, 0, 15, 5}, {19, 0, 10, 5}, {33, 0, 16, 5}, {0, 9, 49, 11}}},
      {"a wide one asks only for what its columns lack; at an end it keeps its width",
       {{.cell = {0, 0}, .least = {10, 5}},
        {.cell = {0, 1}, .least = {10, 5}, .grows = true},
        {.cell = {1, 0, 2}, .least = {40, 5}, .at_end = true},
        {.cell = {2, 0, 2}, .least = {12, 5}, .at_end = true},
        {.cell = {3, 0, 2}, .least = {12, 5}, .at_start = true}},
       {40, 32},
       {10, 0},
       {{0, 0, 10, 5}, {14, 0, 36, 5}, {10, 9, 40, 5}, {38, 18, 12, 5}, {0, 27, 12, 5}}},
      {"what is wanting is taken from those that grow, up to the half",
       {{.cell = {0, 0}, .least = {10, 5}, .grows = true},
        {.cell = {0, 1}, .least = {30, 5}},
        {.cell = {0, 2}, .least = {40, 5}, .grows = true}},
       {88, 5},
       {-20, 0},
       {{0, 0, 5, 5}, {9, 0, 30, 5}, {43, 0, 25, 5}}},
      {"one over two rows makes room in the last",
       {{.cell = {0, 0}, .least = {10, 6}},
        {.cell = {1, 0}, .least = {10, 6}},
        {.cell = {0, 1, 1, 2}, .least = {10, 30}, .fills_height = true}},
       {24, 30},
       {0, 0},
       {{0, 0, 10, 6}, {0, 17, 10, 6}, {14, 0, 10, 30}}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Grid grid(row.items, {4, 4});
    EXPECT_EQ(grid.Least(), row.least);
    EXPECT_EQ(
        grid.Arrange({0, 0, row.least.width + row.more.width, row.least.height + row.more.height}),
        row.places);
  }
}

}  // namespace
}  // namespace vok::windows
