#include "component/run_preview.h"

#include <gmock/gmock.h>

namespace vok::test {
namespace {

using ::testing::ElementsAre;
using ::testing::FieldsAre;

/// `rows` rows for periods 1 and 3, below `label_rows`; row i has the money i, and 1000 times i.
CellBlock Grid(std::size_t label_rows, std::size_t rows) {
  CellBlock grid(label_rows + rows, 17);
  for (std::size_t i = 1; i <= rows; ++i) {
    const auto money = static_cast<double>(i);
    grid.SetText(label_rows + i, 1, "0");
    grid.SetNumber(label_rows + i, 12, 7.0);
    grid.SetNumber(label_rows + i, 13, money);
    grid.SetText(label_rows + i, 16, "");
    if (i != 2) grid.SetNumber(label_rows + i, 17, 1000 * money);
  }
  return grid;
}

TEST(RunPreview, KeepsTheFirstRowsOfTheSheetAndAllTheMoney) {
  PeriodSet set;
  set.Period(1).PeriodName = "Jan";
  set.Period(2).PeriodName = "Feb";
  set.Period(3).PeriodName = "Mar";
  std::vector<QueryPeriod> both(2), first(1);
  both[0].PeriodNumber = first[0].PeriodNumber = 1;
  both[1].PeriodNumber = 3;
  const struct {
    std::size_t first_pass, second_pass;
    std::size_t rows;
    double january, march;
  } cases[] = {{3, 0, 3, 6, 4000}, {98, 5, 100, 4866, 4849000}, {150, 3, 100, 11331, 11323000}};
  for (const auto& c : cases) {
    RunPreview preview;
    AddToPreview(Grid(1, c.first_pass), 2, both, set, preview);
    if (c.second_pass > 0) AddToPreview(Grid(0, c.second_pass), 1, first, set, preview);
    EXPECT_EQ(preview.rows.size(), c.rows);
    EXPECT_THAT(preview.money,
                ElementsAre(FieldsAre(1, "Jan", c.january), FieldsAre(3, "Mar", c.march)));
    EXPECT_EQ(preview.rows[2][12], Value(3.0));
  }
}

}  // namespace
}  // namespace vok::test
