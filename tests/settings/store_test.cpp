// Settings on a real database in a temporary folder.
#include "settings/store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "providers/database/sqlite/sqlite_database.h"
#include "settings/all_sets.h"
#include "settings/edited_sets.h"
#include "settings/exact_sets.h"
#include "settings/left_out.h"
#include "settings/reader.h"
#include "settings/schema.h"
#include "settings/set_fields.h"
#include "settings/writer.h"
#include "system/posix/icu_locale.h"
#include "system/posix/posix_files.h"
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
  void SaveDataSource(const DataSourceSetting& setting) {
    SaveDataSourceInfo(host, environment, setting);
    SaveMoneyMeasures(host, environment, setting);
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
    SaveDataSource(Source(saved, "Old"));
    SavePeriods(host, environment, Year(saved, "Old"));
    SaveDataSource(Source(saved_again));
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

  ImportSets(host, environment, {}, {Year("No #", "first")});
  EXPECT_EQ(PeriodSettings(host, environment, current.periods, "No [#]"), 0);
  EXPECT_EQ(current.periods.Period(1).PeriodName, "first");
}

TEST_F(StoreTest, EverySetIsReachedByItsExactNameAlone) {
  Create();
  const std::vector<std::string> names = {"A?", "Q#1", " pad ", "*",  "[A-Z]1", "it's",
                                          "''", "",    "A1",    "A2", "Q21",    "pad"};
  std::vector<DataSourceSetting> sources;
  std::vector<PeriodSet> sets;
  std::vector<std::string> left;  // "name/text" of what is stored of each kind
  for (const std::string& name : names) {
    sources.push_back(Source(name, "Old"));
    sets.push_back(Year(name, "Old"));
    left.push_back(name + "/Old");
  }
  const auto expect_stored = [&](const std::string& what) {
    std::vector<std::string> of_sets, of_sources;
    for (const auto& set : ReadAllPeriodSets(host, environment)) {
      of_sets.push_back(set.SetName + "/" + set.Period(1).PeriodName);
    }
    for (const auto& set : ReadAllDataSources(host, environment)) {
      of_sources.push_back(set.SetName + "/" + set.MoneySets[0].Measure);
    }
    EXPECT_EQ(of_sets, left) << what;
    EXPECT_EQ(of_sources, left) << what;
  };
  ImportSets(host, environment, sources, sets);
  for (const std::string& name : names) {
    ImportSets(host, environment, {Source(name, "New")}, {Year(name, "New")});
    for (const char* kind : {"periods", "data-source"}) {
      EXPECT_FALSE(RenameSet(host, environment, "none", "other", kind)) << name;
      EXPECT_TRUE(RenameSet(host, environment, name, "other", kind)) << name;
    }
    left.erase(left.begin());
    left.push_back("other/New");
    expect_stored(name);
    for (const char* kind : {"periods", "data-source"}) {
      EXPECT_TRUE(DeleteExactSet(host, environment, "OTHER", kind)) << name;
      EXPECT_FALSE(DeleteExactSet(host, environment, "OTHER", kind)) << name;
    }
    left.pop_back();
  }
  expect_stored("all are deleted");
  ImportSets(host, environment, {}, sets);
  const auto rename = [&](const char* to) { RenameSet(host, environment, "pad", to, "periods"); };
  EXPECT_EQ(NumberOf([&] { rename("a1"); }), failure_number::kIntegrity);
  EXPECT_EQ(NumberOf([&] { rename("PAD"); }), 0) << "the case of its own name";
  EXPECT_EQ(ReadAllPeriodSets(host, environment).size(), names.size());
}

TEST_F(StoreTest, AnImportThatFailsChangesNothing) {
  Create();
  ImportSets(host, environment, {Source("Sales", "Old")}, {Year("Y", "Old")});
  const auto import = [&] {
    ImportSets(host, environment, {Source("Sales"), Source("New")},
               {Year("Y"), Year("Last", std::string(300, 'x'))});
  };
  EXPECT_EQ(NumberOf(import), failure_number::kColumnOverflow);
  ASSERT_EQ(Load("Sales", "Y"), 0);
  EXPECT_EQ(current.data_source.MoneySets[0].Measure, "Old");
  EXPECT_EQ(current.periods.Period(1).PeriodName, "Old");
  EXPECT_EQ(Count("DataSourceInfo") + Count("Periods"), 2);
}

TEST_F(StoreTest, AQuoteInANameFailsTheStatementAndNothingIsLost) {
  Create();
  SaveDataSource(Source("Sales"));
  for (const char* name : {"it's", "'", "x' or setname like '*", "Sales'; delete * from Main"}) {
    EXPECT_EQ(Load(name, name), 9999);
    EXPECT_EQ(memory.boxes.boxes.size(), 3U) << "two reports and the message";
    EXPECT_THAT(memory.boxes.boxes[0].text, HasSubstr("Function : DataSourceSetting"));
    EXPECT_NE(NumberOf([&] { SaveDataSource(Source(name)); }), 0) << name;
    EXPECT_NE(NumberOf([&] { DeleteSet(host, environment, name, "x"); }), 0) << name;
  }
  EXPECT_EQ(Load("Sales", ""), 0);
  EXPECT_EQ(ReadAllDataSources(host, environment).size(), 1U);
}

TEST_F(StoreTest, ARowFromBeforeTheQuantityColumnsLoadsAndSavesInTheWindow) {
  Create();
  SaveDataSourceInfo(host, environment, Source("Sales"));
  const auto add_money = [&] {
    objRs store = OpenSettings(host, environment);
    store.SQL = "MoneySetsMeasures";
    const auto rows = store.GetRs();
    rows->AddNew();
    rows->SetField("SetName", "Sales");
    rows->SetField("CountMoney", 1);
    for (int i = 0; i < kMoneySetCount; ++i) rows->SetField("Measure" + std::to_string(i), "A");
    rows->Update();
  };
  add_money();
  EXPECT_EQ(ReadDataSourceSetting(host, environment, current.data_source, {}, "Sales"),
            failure_number::kItemNotFound);
  const auto edited = ReadEditedDataSource(host, environment, "Sales");
  ASSERT_TRUE(edited);
  EXPECT_EQ(edited->MoneySets[12].Measure + edited->MoneySets[12].Qty, "A");
  EXPECT_EQ(Load("Sales", ""), 0) << "a run reads what the window has loaded";

  DeleteExactSet(host, environment, "Sales", "data-source");
  SaveDataSourceInfo(host, environment, Source("Sales"));
  add_money();  // without quantities, as other programs add a row
  EXPECT_EQ(ReadDataSourceSetting(host, environment, current.data_source, {}, "Sales"),
            failure_number::kInvalidNull);
  const auto again = ReadEditedDataSource(host, environment, "Sales");
  ASSERT_TRUE(again);
  SaveMoneyMeasures(host, environment, *again);
  EXPECT_EQ(Load("Sales", ""), 0);
}

TEST_F(StoreTest, AnotherDatabaseIsReadWithWhatItLacksToldWhatIsLeftOutAndNotWrittenTo) {
  Create();  // without quantities
  const auto add = [&](const std::string& table, const Fields& fields) {
    objRs store = OpenSettings(host, environment);
    store.SQL = table;
    AddRow(*store.GetRs(), fields);
  };
  add("DataSourceInfo", {{"SetName", "Sales"}, {"AccFile", "a.idx"}});
  add("MoneySetsMeasures", {{"SetName", "SALES"}, {"Measure3", "Amount"}});
  add("MoneySetsMeasures", {{"SetName", "Gone"}});
  add("Main", {{"SetName", "Sales"}});
  {
    objRs store = OpenSettings(host, environment);
    const auto catalog = database.NewCatalog();
    catalog->SetActiveConnection(store.OpenedConnection());
    catalog->AppendColumn("Periods", {"Colour", ColumnType::kText, 0, true});
  }
  const std::string path = folder + "/CubToQel.mdb";
  const std::string bytes = ReadWholeFile(files, path);

  objRs store = OpenDatabase(host, path);
  const auto sources = ReadAllDataSources(host, store);
  ASSERT_EQ(sources.size(), 1U);
  EXPECT_EQ(sources[0].MoneySets[3].Measure + sources[0].MoneySets[3].Qty, "Amount");
  EXPECT_EQ(ReadAllPeriodSets(store).size(), 0U);
  EXPECT_THAT(LeftOut(host, store, sources),
              testing::ElementsAre(HasSubstr("AccFile of the data source \"Sales\", \"a.idx\""),
                                   HasSubstr("table Main (1)"), HasSubstr("money sets of \"Gone\""),
                                   HasSubstr("column Colour of the table Periods")));
  EXPECT_EQ(ReadWholeFile(files, path), bytes);
}

TEST_F(StoreTest, ProcessesThatMakeTheFileSaveAndLoadAtOnceLoseNothing) {
  constexpr int kProcesses = 8;
  std::vector<pid_t> children;
  for (int i = 0; i < kProcesses; ++i) {
    children.push_back(test::Start([&, own = "own " + std::to_string(i)] {
      Create();
      for (int round = 0; round < 4; ++round) {
        SaveDataSource(Source(own));
        SaveDataSource(Source("shared"));
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
