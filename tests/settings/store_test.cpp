// Settings on a real database in a temporary folder.
#include "settings/store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "providers/posix/icu_locale.h"
#include "providers/posix/posix_files.h"
#include "providers/sqlite/sqlite_database.h"
#include "settings/all_sets.h"
#include "settings/reader.h"
#include "settings/schema.h"
#include "settings/writer.h"
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
    ASSERT_EQ(Shown(), "");
  }
  /// The texts of all boxes.
  std::string Shown() const {
    std::string texts;
    for (const MessageBox& box : memory.boxes.boxes) texts += box.text + "\n";
    return texts;
  }
  int32_t ColumnCount(const std::string& table) {
    objRs store = OpenSettings(host, environment);
    const auto catalog = database.NewCatalog();
    catalog->SetActiveConnection(store.OpenedConnection());
    return catalog->ColumnCount(table);
  }
  int32_t Count(const std::string& statement) {
    objRs store = OpenSettings(host, environment);
    store.SQL = statement;
    return store.GetRsReadOnly()->RecordCount();
  }
  int32_t Insert(const std::string& table,
                 const std::vector<std::pair<const char*, Value>>& fields) {
    objRs store = OpenSettings(host, environment);
    store.SQL = table;
    const auto rows = store.GetRs();
    return NumberOf([&] {
      rows->AddNew();
      for (const auto& [field, value] : fields) rows->SetField(field, value);
      rows->Update();
    });
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

TEST_F(StoreTest, ANewFileHasItsColumnsAndIsLeftAloneAfterwards) {
  for (const char* ending : {"\\", ""}) {
    CreateDB(host, environment, folder + ending);
    EXPECT_EQ(Shown(), "");
    EXPECT_EQ(ColumnCount("DataSourceInfo"), 7);
    EXPECT_EQ(ColumnCount("Main"), 5);
    EXPECT_EQ(ColumnCount("MoneySetsMeasures"), 41);
    EXPECT_EQ(ColumnCount("Periods"), 49);
  }
  UpgradeQty(host, environment);
  UpgradeQty(host, environment);
  EXPECT_EQ(ColumnCount("MoneySetsMeasures"), 54);
}

TEST_F(StoreTest, AFileOfBeforeTheCalculatedFlagsIsBroughtUpToDate) {
  TableDefinition table{
      "MoneySetsMeasures",
      {{"SetName", ColumnType::kText, 255, false}, {"CountMoney", ColumnType::kInteger, 0, true}}};
  for (const char* prefix : {"MoneySets", "Measure"}) {
    for (int i = 0; i <= 12; ++i) {
      table.columns.push_back({prefix + std::to_string(i), ColumnType::kText, 255, true});
    }
  }
  {
    const auto catalog = database.NewCatalog();
    catalog->Create(SettingsConnectionText(environment));
    catalog->AppendTable(table);
  }
  ASSERT_EQ(Insert("MoneySetsMeasures", {{"SetName", "old"}, {"Measure0", "Amount"}}), 0);
  for (int time = 0; time < 2; ++time) {
    Create();
    EXPECT_EQ(ColumnCount("MoneySetsMeasures"), 41);
  }
  objRs store = OpenSettings(host, environment);
  store.SQL = "MoneySetsMeasures";
  const auto rows = store.GetRsReadOnly();
  EXPECT_EQ(rows->Field("IsCalculated12"), Value(false));
  EXPECT_EQ(rows->Field("Measure0"), Value("Amount"));
}

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
  EXPECT_EQ(Count("SELECT * FROM MoneySetsMeasures"), static_cast<int32_t>(std::size(cases)) - 1);
  EXPECT_EQ(Count("SELECT * FROM DataSourceInfo"), static_cast<int32_t>(std::size(cases)) - 1);
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

TEST_F(StoreTest, ASaveThatFailsLeavesWhatWasStored) {
  Create();
  SaveDataSource(host, environment, Source("Sales"));
  SavePeriods(host, environment, Year("2024"));
  DataSourceSetting source = Source("sales", "New");
  source.CubeFile = "new.cub";
  source.MoneySets[12].MoneySet = Value(std::string(256, 'x'));
  PeriodSet periods = Year("2024", std::string(256, 'x'));
  EXPECT_NE(NumberOf([&] { SaveDataSource(host, environment, source); }), 0);
  EXPECT_NE(NumberOf([&] { SavePeriods(host, environment, periods); }), 0);
  ASSERT_EQ(Load("Sales", "2024"), 0);
  EXPECT_EQ(current.data_source.CubeFile, "c.cub");
  EXPECT_EQ(current.data_source.MoneySets[0].Measure, "Amount");
  EXPECT_EQ(current.periods.Period(1).PeriodName, "Jan");
}

TEST_F(StoreTest, TheTablesGuardTheirKeysAndAcceptNulls) {
  Create();
  for (const char* table : {"DataSourceInfo", "MoneySetsMeasures", "Periods"}) {
    EXPECT_EQ(Insert(table, {{"SetName", "Имя"}}), 0) << table;
    EXPECT_EQ(Insert(table, {{"SetName", "ИМЯ"}}), failure_number::kIntegrity) << table;
    EXPECT_NE(Insert(table, {{"SetName", Null{}}}), 0) << table;
    EXPECT_EQ(Count(std::string("SELECT * FROM ") + table), 1) << table;
  }
  EXPECT_EQ(Insert("MoneySetsMeasures",
                   {{"SetName", "n"}, {"CountMoney", Null{}}, {"MoneySets0", Null{}}}),
            0);
  EXPECT_EQ(Load("", "Имя"), 9999);
  EXPECT_THAT(memory.boxes.boxes.at(0).text, HasSubstr("Error : 94\r\n")) << "NULL dates";
}

TEST_F(StoreTest, AFileWithoutQuantityColumnsFailsUntilASetIsSaved) {
  Create();
  SaveDataSourceInfo(host, environment, Source("Sales"));
  ASSERT_EQ(
      Insert("MoneySetsMeasures", {{"SetName", "Sales"}, {"CountMoney", 1}, {"Measure0", "A"}}), 0);
  EXPECT_EQ(ReadDataSourceSetting(host, environment, current.data_source, {}, "Sales"),
            failure_number::kItemNotFound);
  SaveMoneyMeasures(host, environment, Source("Sales"));
  EXPECT_EQ(Load("Sales", ""), 0);
}

TEST_F(StoreTest, ASnapshotOutlivesItsConnectionAndACommandMayMatchNothing) {
  Create();
  SavePeriods(host, environment, Year("a"));
  SavePeriods(host, environment, Year("b"));
  std::unique_ptr<Recordset> snapshot;
  {
    objRs store = OpenSettings(host, environment);
    store.SQL = "SELECT * FROM Periods";
    snapshot = store.GetRsReadOnly();
    store.SQL = "DELETE * FROM Periods WHERE setname like 'none'";
    store.RunCommand();
  }
  DeleteSet(host, environment, "*", "Periods");
  EXPECT_EQ(snapshot->RecordCount(), 2);
  snapshot->MoveNext();
  EXPECT_EQ(snapshot->Field("setname"), Value("b"));
}

TEST_F(StoreTest, DataSourcesAreListedWithTheDatesOfTheirCubes) {
  Create();
  const std::string cube = folder + "/c.cub";
  std::ofstream(cube) << "cube";
  DataSourceSetting here = Source("here");
  here.CubeFile = cube;
  SaveDataSource(host, environment, here);
  SaveDataSource(host, environment, Source("gone"));
  const DataSourceList list = ListDataSources(host, environment);
  EXPECT_EQ(list.names, (Value::Array{"here", "gone"}));
  EXPECT_EQ(list.cube_files, (Value::Array{cube, ""}));
  EXPECT_EQ(list.file_dates, (Value::Array{files.LastModified(cube), Value()}));
}

TEST_F(StoreTest, AFileThatIsNoDatabaseIsShownAndNotTouched) {
  const std::string file = folder + "/CubToQel.mdb";
  for (const std::string& content :
       {std::string("\0\1\0\0Standard Jet DB\0", 20), std::string("no database at all")}) {
    std::ofstream(file, std::ios::binary) << content;
    memory.boxes.boxes.clear();
    CreateDB(host, environment, folder);
    EXPECT_EQ(memory.boxes.boxes.size(), 1U);
    EXPECT_EQ(Load("Sales", "2024"), 9999);
    EXPECT_NE(NumberOf([&] { SaveDataSource(host, environment, Source("Sales")); }), 0);
    std::ifstream left(file, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(left), {}), content);
  }
}

TEST_F(StoreTest, ProcessesThatMakeTheFileSaveAndLoadAtOnceLoseNothing) {
  constexpr int kProcesses = 8;
  std::vector<pid_t> children;
  for (int i = 0; i < kProcesses; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      const std::string own = "own " + std::to_string(i);
      int failures = NumberOf([&] {
        CreateDB(host, environment, folder);
        if (!Shown().empty()) throw Failure(1, Shown());
        for (int round = 0; round < 2; ++round) {
          SaveDataSource(host, environment, Source(own));
          SaveDataSource(host, environment, Source("shared"));
          SavePeriods(host, environment, Year("shared"));
          if (Load(own, "shared") != 0) throw Failure(1, "lost");
        }
      });
      _exit(failures == 0 ? 0 : 1);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(ReadAllDataSources(host, environment).size(), kProcesses + 1U);
  EXPECT_EQ(ReadAllPeriodSets(host, environment).size(), 1U);
  EXPECT_EQ(ColumnCount("MoneySetsMeasures"), 54);
}

}  // namespace
}  // namespace vok
