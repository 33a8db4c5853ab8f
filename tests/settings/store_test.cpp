// Settings on a real database in a temporary folder.
#include "settings/store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "providers/posix/icu_locale.h"
#include "providers/posix/posix_files.h"
#include "providers/sqlite/sqlite_database.h"
#include "settings/all_sets.h"
#include "settings/reader.h"
#include "settings/schema.h"
#include "settings/writer.h"
#include "tests/support/child_process.h"
#include "tests/support/failures.h"
#include "tests/support/memory_host.h"
#include "tests/support/temporary_folder.h"

namespace vok {
namespace {

using test::NumberOf;
using testing::HasSubstr;

DataSourceSetting Source(const std::string& name, const std::string& measure = "Amount") {
  DataSourceSetting setting{name, "c.cub", "QEL", "Ledger1", "", "", "host.mdb", 2, {}};
  setting.MoneySets[0] = {Value("ש\"ח"), measure, "Units", true};
  setting.MoneySets[12] = {Value(""), "", "Stück", false};
  return setting;
}

PeriodSet Year(const std::string& name, const std::string& first = "Jan") {
  PeriodSet set;
  set.SetName = name;
  set.Period(1) = {first, Date::FromCivil(2024, 1, 1), Date::FromCivil(2024, 1, 31), true};
  return set;
}

class StoreTest : public testing::Test {
 protected:
  StoreTest() { environment.SettingsFolder = folder; }

  void Create() {
    CreateDB(host, environment, folder);
    if (!memory.boxes.boxes.empty()) throw Failure(1, memory.boxes.boxes[0].text);
  }
  int32_t Count(const std::string& table) {
    objRs store = OpenSettings(host, environment);
    store.SQL = table;
    return store.GetRsReadOnly()->RecordCount();
  }
  int32_t Load(const std::string& source, const std::string& periods) {
    current = {};
    memory.boxes.boxes.clear();
    return LoadSettings(host, environment, current, {}, source, periods);
  }

  const test::TemporaryFolder temporary;
  const std::string folder = temporary.path();
  test::MemoryHost memory;
  PosixFiles files;
  IcuLocale locale{"en_US"};
  SqliteDatabase database{files, locale};
  Host host{memory.host.component, files,        memory.registry, locale,
            memory.clock,          memory.boxes, database,        memory.no_cube,
            memory.no_spreadsheet};
  Environment environment;
  CurrentSettings current;
};

TEST_F(StoreTest, WhatWasSavedIsLoadedByAnySpellingOfItsName) {
  Create();
  struct {
    const char* saved;
    const char* saved_again;
    const char* loaded;
  } const cases[] = {
      {"Sales", "sales", "  SALES "},
      {"Продажи", "ПРОДАЖИ", "продажи"},
      {"מכירות 2024", "מכירות 2024", " מכירות 2024"},
      {"Größe", "GRÖSSE", "größe"},
      {"ΛΟΓΟΣ", "λογος", "λογοσ"},
      {"50% _x_ \\ \" -- ;", "50% _X_ \\ \" -- ;", "50% _x_ \\ \" -- ;"},
  };
  for (const auto& [saved, saved_again, loaded] : cases) {
    SaveDataSource(host, environment, Source(saved, "Old"));
    SavePeriods(host, environment, Year(saved, "Old"));
    SaveDataSource(host, environment, Source(saved_again));
    SavePeriods(host, environment, Year(saved_again));
    ASSERT_EQ(Load(loaded, loaded), 0) << saved;
    const DataSourceSetting& source = current.data_source;
    EXPECT_EQ(source.SetName, saved_again);
    EXPECT_EQ(source.OBS, "Ledger1");
    EXPECT_EQ(source.CountMoney, 2);
    EXPECT_EQ(source.MoneySets[0].MoneySet, Value("ש\"ח"));
    EXPECT_TRUE(source.MoneySets[0].IsCalculated);
    EXPECT_TRUE(source.MoneySets[1].MoneySet.IsNull());
    EXPECT_EQ(source.MoneySets[12].Measure, "Amount");
    EXPECT_EQ(source.MoneySets[12].Qty, "Stück");
    EXPECT_EQ(current.periods.Period(1).UntilDate, Date::FromCivil(2024, 1, 31));
    EXPECT_TRUE(current.periods.Period(1).IncludeOpenBalance);
    EXPECT_TRUE(current.periods.Period(2).FromDate.IsZero());
  }
  EXPECT_EQ(ReadAllDataSources(host, environment).size(), std::size(cases));
  EXPECT_EQ(ReadAllPeriodSets(host, environment).size(), std::size(cases));
  DeleteSet(host, environment, "SALES", "periods");
  EXPECT_EQ(Load("Sales", "Sales"), 9999);
  DeleteSet(host, environment, "продажи", "DataSource");
  for (const char* table : {"MoneySetsMeasures", "DataSourceInfo", "Periods"}) {
    EXPECT_EQ(Count(table), static_cast<int32_t>(std::size(cases)) - 1) << table;
  }
}

TEST_F(StoreTest, WildcardsInANameMatchByPattern) {
  Create();
  SavePeriods(host, environment, Year("Year 1"));
  for (const char* pattern : {"Y*", "year ?", "Year #", "[X-Z]ear 1", "*"}) {
    EXPECT_EQ(Load("", pattern), 9999);
    EXPECT_EQ(current.periods.SetName, "Year 1") << pattern;
  }
  EXPECT_EQ(PeriodSettings(host, environment, current.periods, "Year ??"), 9999);

  SavePeriods(host, environment, Year("No #", "first"));
  EXPECT_EQ(NumberOf([&] { SavePeriods(host, environment, Year("No #", "second")); }),
            failure_number::kIntegrity)
      << "\"#\" is a digit: the old row is not found";
  EXPECT_EQ(PeriodSettings(host, environment, current.periods, "No [#]"), 0);
  EXPECT_EQ(current.periods.Period(1).PeriodName, "first");
}

TEST_F(StoreTest, AQuoteInANameFailsTheStatementAndNothingIsLost) {
  Create();
  SaveDataSource(host, environment, Source("Sales"));
  for (const char* name : {"it's", "'", "x' or setname like '*", "Sales'; delete * from Main"}) {
    EXPECT_EQ(Load(name, name), 9999);
    EXPECT_EQ(memory.boxes.boxes.size(), 3U) << "two reports and the message";
    EXPECT_THAT(memory.boxes.boxes[0].text, HasSubstr("Function : DataSourceSetting"));
    EXPECT_NE(NumberOf([&] { SaveDataSource(host, environment, Source(name)); }), 0) << name;
    EXPECT_NE(NumberOf([&] { DeleteSet(host, environment, name, "x"); }), 0) << name;
  }
  EXPECT_EQ(Load("Sales", ""), 0);
  EXPECT_EQ(ReadAllDataSources(host, environment).size(), 1U);
}

TEST_F(StoreTest, AFileWithoutQuantityColumnsFailsUntilASetIsSaved) {
  Create();
  SaveDataSourceInfo(host, environment, Source("Sales"));
  objRs store = OpenSettings(host, environment);
  store.SQL = "MoneySetsMeasures";
  const auto rows = store.GetRs();
  rows->AddNew();
  rows->SetField("SetName", "Sales");
  rows->SetField("CountMoney", 1);
  rows->SetField("Measure0", "A");
  rows->Update();
  EXPECT_EQ(ReadDataSourceSetting(host, environment, current.data_source, {}, "Sales"),
            failure_number::kItemNotFound);
  SaveMoneyMeasures(host, environment, Source("Sales"));
  EXPECT_EQ(Load("Sales", ""), 0);
}

TEST_F(StoreTest, ProcessesThatMakeTheFileSaveAndLoadAtOnceLoseNothing) {
  constexpr int kProcesses = 8;
  std::vector<pid_t> children;
  for (int i = 0; i < kProcesses; ++i) {
    children.push_back(test::Start([&, own = "own " + std::to_string(i)] {
      Create();
      for (int round = 0; round < 4; ++round) {
        SaveDataSource(host, environment, Source(own));
        SaveDataSource(host, environment, Source("shared"));
        SavePeriods(host, environment, Year("shared"));
        if (Load(own, "shared") != 0) throw Failure(1, "lost");
      }
    }));
  }
  for (const pid_t child : children) EXPECT_EQ(test::StatusOf(child), 0);
  EXPECT_EQ(ReadAllDataSources(host, environment).size(), kProcesses + 1U);
  EXPECT_EQ(ReadAllPeriodSets(host, environment).size(), 1U);
}

}  // namespace
}  // namespace vok
