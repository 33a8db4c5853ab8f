#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "settings/set_lists.h"
#include "settings/set_reader.h"
#include "tests/support/failures.h"
#include "tests/support/memory_host.h"
#include "tests/support/table_database.h"

namespace vok {
namespace {

using test::TableRow;
using testing::HasSubstr;

TableRow MoneyRow(const char* name) {
  TableRow row = {{"SetName", name}};
  for (int i = 0; i <= 12; ++i) row["Qty" + std::to_string(i)] = "Units";
  return row;
}

TableRow PeriodsRow(const char* name) {
  TableRow row = {{"SetName", name}};
  for (int i = 1; i <= 12; ++i) {
    row["PeriodName" + std::to_string(i)] = "new";
    row["FromDate" + std::to_string(i)] = Date{45292};
    row["UntillDate" + std::to_string(i)] = Date{45322};
  }
  return row;
}

class ReaderTest : public testing::Test {
 protected:
  ReaderTest() {
    tables["DataSourceInfo"] = {{{"SetName", "Sales"}, {"CubeFile", " a.cub "}}};
    tables["MoneySetsMeasures"] = {MoneyRow("Sales")};
    tables["Periods"] = {PeriodsRow("2024")};
  }
  int32_t ReadSales() {
    return ReadDataSourceSetting(host, environment, current.data_source, measures, " Sales ");
  }
  int32_t ReadPeriods() { return PeriodSettings(host, environment, current.periods, "2024"); }

  test::MemoryHost memory;
  test::TableDatabase database;
  test::Tables& tables = database.tables;
  Host host = memory.On(database);
  Environment environment;
  CurrentSettings current;
  Value::Array measures;
};

TEST_F(ReaderTest, AnEmptyMeasureIsThatOfSetZeroWhichIsTheCubesFirst) {
  struct {
    const char* stored;
    Value::Array cube;
    const char* first;
  } const cases[] = {
      {"Amount", {"Other"}, "Amount"},
      {"", {"First", "Second"}, "First"},
      {"", {}, ""},
      {"", {Value(), "Second"}, ""},
  };
  for (const auto& [stored, cube, first] : cases) {
    tables["MoneySetsMeasures"][0]["Measure0"] = stored;
    tables["MoneySetsMeasures"][0]["Measure7"] = "Seven";
    measures = cube;
    ASSERT_EQ(ReadSales(), 0);
    EXPECT_EQ(current.data_source.MoneySets[0].Measure, first);
    EXPECT_EQ(current.data_source.MoneySets[3].Measure, first);
    EXPECT_EQ(current.data_source.MoneySets[7].Measure, "Seven");
  }
}

TEST_F(ReaderTest, AFieldThatCannotBeReadEndsTheReadAndIsReported) {
  struct {
    const char* table;
    const char* field;
    Value value;
    int32_t number;
    int32_t in_window;
  } const cases[] = {
      {"DataSourceInfo", "OBs", Null{}, 94, 94},
      {"MoneySetsMeasures", "CountMoney", Null{}, 94, 94},
      {"MoneySetsMeasures", "CountMoney", 40000, 6, 6},
      {"MoneySetsMeasures", "Measure3", Null{}, 94, 94},
      {"MoneySetsMeasures", "Qty12", Null{}, 94, 0},
      {"Periods", "FromDate1", Null{}, 94, 94},
      {"Periods", "UntillDate12", Null{}, 94, 94},
  };
  for (const auto& [table, field, value, number, in_window] : cases) {
    const auto kept = tables;
    tables[table][0][field] = value;
    memory.boxes.boxes.clear();
    const bool periods = std::string(table) == "Periods";
    EXPECT_EQ(periods ? ReadPeriods() : ReadSales(), number) << field;
    const auto edit = [&, in_periods = periods] {
      if (in_periods) {
        ReadEditedPeriods(host, environment, "2024");
      } else {
        ReadEditedDataSource(host, environment, "Sales");
      }
    };
    EXPECT_EQ(test::NumberOf(edit), in_window) << field;
    ASSERT_EQ(memory.boxes.boxes.size(), 1U) << field;
    const std::string& text = memory.boxes.boxes[0].text;
    EXPECT_THAT(text, HasSubstr(std::string("field ") + field + " of the table " + table));
    EXPECT_THAT(text, HasSubstr(std::string("\r\nFunction : ") +
                                (periods ? "PeriodSettings" : "DataSourceSetting") +
                                "\r\nModule : ModSettings\r\n"));
    tables = kept;
  }
  tables["Periods"][0]["PeriodName5"] = Null{};
  EXPECT_EQ(ReadEditedPeriods(host, environment, "2024")->Period(5).PeriodName, "");
}

TEST_F(ReaderTest, PeriodsReplaceAllDatesButKeepANameWhereNoneIsStored) {
  for (int i = 1; i <= 12; ++i) current.periods.Period(i) = {"old", Date{1}, Date{2}, false};
  TableRow& row = tables["Periods"][0];
  row["PeriodName5"] = Null{};
  ASSERT_EQ(ReadPeriods(), 0);
  for (int i = 1; i <= 12; ++i) {
    const PeriodEntry& period = current.periods.Period(i);
    EXPECT_EQ(period.PeriodName, i == 5 ? "old" : "new") << i;
    EXPECT_EQ(period.FromDate, Date{45292}) << i;
    EXPECT_EQ(period.UntilDate, Date{45322}) << i;
  }
  row["FromDate3"] = Null{};
  EXPECT_EQ(ReadPeriods(), 94);
  EXPECT_EQ(current.periods.Period(2).UntilDate, Date{45322});
  EXPECT_TRUE(current.periods.Period(12).UntilDate.IsZero()) << "cleared before reading";
}

TEST_F(ReaderTest, ListsWithoutRowsHaveOneEmptyEntry) {
  for (auto& [name, rows] : tables) rows.clear();
  const Value::Array nothing(1);
  const DataSourceList list = ListDataSources(host, environment);
  EXPECT_EQ(list.names, nothing);
  EXPECT_EQ(list.cube_files, nothing);
  EXPECT_EQ(list.file_dates, nothing);
  EXPECT_EQ(ListPeriodSets(host, environment), nothing);
}

}  // namespace
}  // namespace vok
