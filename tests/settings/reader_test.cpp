#include "settings/reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "settings/all_sets.h"
#include "tests/support/memory_host.h"
#include "tests/support/recording_database.h"

namespace vok {
namespace {

using test::Row;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr char kInfo[] = "SELECT * FROM DataSourceInfo WHERE setname like 'Sales'";
constexpr char kMoney[] = "SELECT * FROM MoneySetsMeasures WHERE setname like 'Sales'";
constexpr char kPeriods[] = "SELECT * FROM Periods WHERE setname like '2024'";

Row InfoRow(const char* name) {
  return {{"SetName", name},  {"VarnelMDB", "host.mdb"}, {"CubeFile", "c.cub"}, {"CubeName", "QEL"},
          {"OBS", "Ledger1"}, {"ActFile", "act"},        {"AccFile", "acc"}};
}

Row MoneyRow(const char* name) {
  Row row = {{"SetName", name}, {"CountMoney", 2}};
  for (const auto& [prefix, value] : {std::pair<const char*, Value>{"MoneySets", Null{}},
                                      {"Measure", ""},
                                      {"Qty", "Units"},
                                      {"IsCalculated", true}}) {
    for (int i = 0; i <= 12; ++i) row.emplace_back(prefix + std::to_string(i), value);
  }
  return row;
}

Row PeriodsRow(const char* name) {
  Row row = {{"SetName", name}};
  for (const auto& [prefix, value] : {std::pair<const char*, Value>{"PeriodName", "new"},
                                      {"FromDate", Date{45292}},
                                      {"UntillDate", Date{45322}},
                                      {"includeOpenBalans", true}}) {
    for (int i = 1; i <= 12; ++i) row.emplace_back(prefix + std::to_string(i), value);
  }
  return row;
}

void Set(Row& row, const std::string& field, const Value& value) {
  for (auto& [name, old] : row) {
    if (name == field) old = value;
  }
}

class ReaderTest : public testing::Test {
 protected:
  ReaderTest() {
    environment.SettingsFolder = "/s";
    rows[kInfo] = {InfoRow("SALES")};
    rows[kMoney] = {MoneyRow("SALES")};
    rows[kPeriods] = {PeriodsRow("2024")};
  }
  int32_t ReadSales() {
    return ReadDataSourceSetting(host, environment, current.data_source, measures, " Sales ");
  }

  test::MemoryHost memory;
  test::RecordingDatabase database;
  std::map<std::string, std::vector<Row>>& rows = database.record.rows;
  Host host = memory.On(database);
  Environment environment;
  CurrentSettings current;
  Value::Array measures;
};

TEST_F(ReaderTest, ADataSourceIsReadIntoTheCurrentRecord) {
  Set(rows[kMoney][0], "MoneySets0", "NIS");
  Set(rows[kMoney][0], "Measure12", "Last");
  current.data_source.VarnelMDB = "kept";
  ASSERT_EQ(ReadSales(), 0);
  const DataSourceSetting& setting = current.data_source;
  EXPECT_THAT((std::vector{setting.SetName, setting.CubeFile, setting.CubeName, setting.OBS,
                           setting.ActFile, setting.AccFile, setting.VarnelMDB}),
              ElementsAre("SALES", "c.cub", "QEL", "Ledger1", "act", "acc", "kept"));
  EXPECT_EQ(setting.CountMoney, 2);
  EXPECT_EQ(setting.MoneySets[0].MoneySet, Value("NIS"));
  EXPECT_TRUE(setting.MoneySets[12].MoneySet.IsNull());
  EXPECT_EQ(setting.MoneySets[12].Measure, "Last");
  EXPECT_EQ(setting.MoneySets[12].Qty, "Units");
  EXPECT_TRUE(setting.MoneySets[12].IsCalculated);
}

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
    Set(rows[kMoney][0], "Measure0", stored);
    Set(rows[kMoney][0], "Measure7", "Seven");
    measures = cube;
    ASSERT_EQ(ReadSales(), 0);
    EXPECT_EQ(current.data_source.MoneySets[0].Measure, first);
    EXPECT_EQ(current.data_source.MoneySets[3].Measure, first);
    EXPECT_EQ(current.data_source.MoneySets[7].Measure, "Seven");
  }
}

TEST_F(ReaderTest, AFieldThatCannotBeReadEndsTheReadAndIsReported) {
  struct {
    const char* statement;
    const char* field;
    Value value;
    int32_t number;
  } const cases[] = {
      {kInfo, "OBS", Null{}, 94},
      {kInfo, "CubeFile", Null{}, 94},
      {kMoney, "CountMoney", Null{}, 94},
      {kMoney, "CountMoney", 40000, 6},
      {kMoney, "Measure3", Null{}, 94},
      {kMoney, "Qty12", Null{}, 94},
      {kMoney, "IsCalculated0", Null{}, 94},
      {kPeriods, "FromDate1", Null{}, 94},
      {kPeriods, "UntillDate12", Null{}, 94},
      {kPeriods, "includeOpenBalans6", Null{}, 94},
  };
  for (const auto& [statement, field, value, number] : cases) {
    const auto kept = rows;
    Set(rows[statement][0], field, value);
    memory.boxes.boxes.clear();
    const bool periods = statement == kPeriods;
    EXPECT_EQ(periods ? PeriodSettings(host, environment, current.periods, "2024") : ReadSales(),
              number)
        << field;
    ASSERT_EQ(memory.boxes.boxes.size(), 1U) << field;
    EXPECT_THAT(memory.boxes.boxes[0].text,
                HasSubstr(std::string("\r\nFunction : ") +
                          (periods ? "PeriodSettings" : "DataSourceSetting") +
                          "\r\nModule : ModSettings\r\n"));
    EXPECT_THAT(memory.boxes.boxes[0].text, HasSubstr(periods ? "set \"2024\"" : "set \"SALES\""));
    rows = kept;
  }
}

TEST_F(ReaderTest, AFileWithoutQuantityColumnsFailsAfterWhatWasRead) {
  std::erase_if(rows[kMoney][0], [](const auto& field) { return field.first.starts_with("Qty"); });
  EXPECT_EQ(ReadSales(), failure_number::kItemNotFound);
  EXPECT_THAT(memory.boxes.boxes.at(0).text,
              HasSubstr("field Qty0 of the table MoneySetsMeasures"));
  EXPECT_EQ(current.data_source.CubeName, "QEL");
  EXPECT_EQ(current.data_source.CountMoney, 2);
}

TEST_F(ReaderTest, PeriodsReplaceAllDatesButKeepANameWhereNoneIsStored) {
  for (int i = 1; i <= 12; ++i) current.periods.Period(i) = {"old", Date{1}, Date{2}, false};
  Set(rows[kPeriods][0], "PeriodName5", Null{});
  ASSERT_EQ(PeriodSettings(host, environment, current.periods, "2024"), 0);
  for (int i = 1; i <= 12; ++i) {
    const PeriodEntry& period = current.periods.Period(i);
    EXPECT_EQ(period.PeriodName, i == 5 ? "old" : "new") << i;
    EXPECT_EQ(period.FromDate, Date{45292}) << i;
    EXPECT_EQ(period.UntilDate, Date{45322}) << i;
    EXPECT_TRUE(period.IncludeOpenBalance) << i;
  }
  Set(rows[kPeriods][0], "FromDate3", Null{});
  EXPECT_EQ(PeriodSettings(host, environment, current.periods, "2024"), 94);
  EXPECT_EQ(current.periods.Period(2).UntilDate, Date{45322});
  EXPECT_TRUE(current.periods.Period(3).FromDate.IsZero()) << "cleared before reading";
  EXPECT_TRUE(current.periods.Period(12).UntilDate.IsZero()) << "cleared before reading";
}

TEST_F(ReaderTest, LoadingTellsInOneMessageWhatWasNotFound) {
  const std::string source = "Datasource Definition: ", set = "Periods Definition: ";
  struct {
    const char* data_source;
    const char* periods;
    std::string text;
  } const cases[] = {
      {"Sales", "2024", ""},
      {"Sales", "", ""},
      {"", "2024", source + "  Not Found!! \r\n"},
      {"Other", "2024", source + "Other  Not Found!! \r\n"},
      {"Sales", "2025", set + "2025  Not Found!! "},
      {"a", "b", source + "a  Not Found!! \r\n" + set + "b  Not Found!! "},
  };
  for (const auto& [data_source, periods, text] : cases) {
    memory.boxes.boxes.clear();
    current = {};
    const int32_t result = LoadSettings(host, environment, current, {}, data_source, periods);
    EXPECT_EQ(result, text.empty() ? 0 : 9999) << data_source << periods;
    ASSERT_EQ(memory.boxes.boxes.size(), text.empty() ? 0U : 1U) << data_source << periods;
    if (text.empty()) continue;
    EXPECT_EQ(memory.boxes.boxes[0], (MessageBox{text, "VokCubeQ17", MessageIcon::kInformation,
                                                 MessageButtons::kOk, "", 0}));
    const bool has_periods = text.find(set) == std::string::npos;
    EXPECT_EQ(current.periods.SetName, has_periods ? "2024" : "") << "periods are always tried";
  }
}

TEST_F(ReaderTest, WithoutItsMoneySetsADataSourceIsNotFound) {
  rows.erase(kMoney);
  EXPECT_EQ(ReadSales(), 9999);
  EXPECT_EQ(current.data_source.CubeFile, "c.cub");
  EXPECT_TRUE(memory.boxes.boxes.empty());
}

TEST_F(ReaderTest, ListsHaveOneEmptyEntryWhenNothingIsStored) {
  const Value::Array nothing(1);
  EXPECT_EQ(ListPeriodSets(host, environment), nothing);
  const DataSourceList list = ListDataSources(host, environment);
  EXPECT_EQ(list.names, nothing);
  EXPECT_EQ(list.cube_files, nothing);
  EXPECT_EQ(list.file_dates, nothing);
}

TEST_F(ReaderTest, ListsFollowTheRows) {
  rows["SELECT * FROM Periods "] = {PeriodsRow("2024"), PeriodsRow("2023")};
  rows["SELECT SetName,CubeFile FROM DataSourceInfo "] = {
      {{"SetName", "A"}, {"CubeFile", " a.cub "}},
      {{"SetName", "B"}, {"CubeFile", "gone.cub"}},
      {{"SetName", "C"}, {"CubeFile", ""}}};
  memory.files.files["a.cub"] = "cube";
  memory.files.modified["a.cub"] = Date{45292.5};
  EXPECT_EQ(ListPeriodSets(host, environment), (Value::Array{"2024", "2023"}));
  const DataSourceList list = ListDataSources(host, environment);
  EXPECT_EQ(list.names, (Value::Array{"A", "B", "C"}));
  EXPECT_EQ(list.cube_files, (Value::Array{" a.cub ", "", ""}));
  EXPECT_EQ(list.file_dates, (Value::Array{Date{45292.5}, Value(), Value()}));
}

TEST_F(ReaderTest, AllSetsAreReadWithNullsAsEmpty) {
  rows["SELECT * FROM DataSourceInfo"] = {InfoRow("Год"), InfoRow("B")};
  rows["SELECT * FROM MoneySetsMeasures"] = {MoneyRow("orphan"), MoneyRow("ГОД")};
  rows["SELECT * FROM Periods"] = {PeriodsRow("P")};
  Row& money = rows["SELECT * FROM MoneySetsMeasures"][1];
  for (const char* field : {"CountMoney", "Measure3", "Qty0"}) Set(money, field, Null{});
  Set(rows["SELECT * FROM Periods"][0], "FromDate1", Null{});

  const auto sources = ReadAllDataSources(host, environment);
  ASSERT_EQ(sources.size(), 2U);
  EXPECT_EQ(sources[0].VarnelMDB, "host.mdb");
  EXPECT_EQ(sources[0].CountMoney, 0);
  EXPECT_EQ(sources[0].MoneySets[0].Qty, "");
  EXPECT_EQ(sources[0].MoneySets[1].Qty, "Units") << "found without regard to case";
  EXPECT_TRUE(sources[0].MoneySets[1].MoneySet.IsNull());
  EXPECT_EQ(sources[1].MoneySets[1].Qty, "") << "no row of money sets";

  const auto sets = ReadAllPeriodSets(host, environment);
  ASSERT_EQ(sets.size(), 1U);
  EXPECT_TRUE(sets[0].Period(1).FromDate.IsZero());
  EXPECT_EQ(sets[0].Period(2).FromDate, Date{45292});
}

}  // namespace
}  // namespace vok
