// Rows as no writer of settings leaves them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "settings/set_reader.h"
#include "tests/support/failures.h"
#include "tests/support/memory_host.h"
#include "tests/support/table_database.h"

namespace vok {
namespace {

using testing::AllOf;
using testing::HasSubstr;

struct ReaderTest : testing::Test {
  ReaderTest() {
    for (auto& [table, rows] : tables) rows = {{{"SetName", "S"}}};
  }
  int32_t ReadPeriods() { return PeriodSettings(host, environment, set, "S"); }

  test::MemoryHost memory;
  test::TableDatabase database;
  test::Tables& tables = database.tables;
  Host host = memory.On(database);
  Environment environment;
  PeriodSet set;
};

TEST_F(ReaderTest, AFieldThatCannotBeReadEndsTheReadAndIsReported) {
  struct {
    std::string table, field;
    Value value;
    int32_t number;
  } const cases[] = {
      {"DataSourceInfo", "OBs", Null{}, 94},         {"MoneySetsMeasures", "CountMoney", 40000, 6},
      {"MoneySetsMeasures", "Measure3", Null{}, 94}, {"MoneySetsMeasures", "Qty12", Null{}, 94},
      {"Periods", "FromDate1", Null{}, 94},          {"Periods", "UntillDate12", Null{}, 94},
  };
  for (const auto& c : cases) {
    const auto kept = tables;
    tables[c.table][0][c.field] = c.value;
    const bool of_periods = c.table == "Periods";
    DataSourceSetting source;
    EXPECT_EQ(
        of_periods ? ReadPeriods() : ReadDataSourceSetting(host, environment, source, {}, "S"),
        c.number)
        << c.field;
    const auto boxes = std::exchange(memory.boxes.boxes, {});
    ASSERT_EQ(boxes.size(), 1U) << c.field;
    const std::string procedure = of_periods ? "PeriodSettings" : "DataSourceSetting";
    EXPECT_THAT(boxes[0].text,
                AllOf(HasSubstr("field " + c.field + " of the table " + c.table),
                      HasSubstr("\r\nFunction : " + procedure + "\r\nModule : ModSettings\r\n")));
    const auto in_window = [&] {
      of_periods ? void(ReadEditedPeriods(host, environment, "S"))
                 : void(ReadEditedDataSource(host, environment, "S"));
    };
    EXPECT_EQ(test::NumberOf(in_window), c.field == "Qty12" ? 0 : c.number) << c.field;
    tables = kept;
  }
}

TEST_F(ReaderTest, PeriodsReplaceAllDatesButKeepANameWhereNoneIsStored) {
  test::TableRow& row = tables["Periods"][0];
  row["PeriodName5"] = Null{};
  row["PeriodName6"] = "new";
  row["UntillDate2"] = Date{45292};
  set.Period(5) = set.Period(6) = {"old", Date{1}, Date{2}, false};
  ASSERT_EQ(ReadPeriods(), 0);
  EXPECT_EQ(set.Period(5).PeriodName + set.Period(6).PeriodName, "oldnew");
  EXPECT_TRUE(set.Period(5).FromDate.IsZero() && set.Period(6).UntilDate.IsZero());
  EXPECT_EQ(ReadEditedPeriods(host, environment, "S")->Period(5).PeriodName, "");
  row["FromDate3"] = Null{};
  set.Period(2) = set.Period(12) = {"old", Date{1}, Date{2}, false};
  EXPECT_EQ(ReadPeriods(), 94);
  EXPECT_EQ(set.Period(2).UntilDate, Date{45292});
  EXPECT_TRUE(set.Period(12).UntilDate.IsZero()) << "cleared before reading";
}

}  // namespace
}  // namespace vok
