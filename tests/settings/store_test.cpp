// Settings on a real database in a temporary folder.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "providers/database/sqlite/sqlite_database.h"
#include "settings/exact_sets.h"
#include "settings/left_out.h"
#include "settings/set_lists.h"
#include "settings/set_reader.h"
#include "settings/set_writer.h"
#include "settings/settings_database.h"
#include "settings/settings_tables.h"
#include "system/posix/icu_locale.h"
#include "system/posix/posix_files.h"
#include "tests/support/child_process.h"
#include "tests/support/failures.h"
#include "tests/support/memory_host.h"
#include "tests/support/temporary_folder.h"

namespace vok {
namespace {

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

/// Counts the tables that are opened, which is to read them whole.
struct CountedConnection : Connection {
  CountedConnection(std::unique_ptr<Connection> given, int& count)
      : connection(std::move(given)), tables_opened(count) {}
  std::unique_ptr<Rows> Query(const std::string& text) override { return connection->Query(text); }
  std::unique_ptr<WritableTable> OpenTable(const std::string& name) override {
    ++tables_opened;
    return connection->OpenTable(name);
  }
  void Execute(const std::string& text) override { connection->Execute(text); }
  std::unique_ptr<DatabaseStructure> OpenStructure() override {
    return connection->OpenStructure();
  }
  void Begin(Purpose purpose) override { connection->Begin(purpose); }
  void Commit() override { connection->Commit(); }
  void Rollback() noexcept override { connection->Rollback(); }

  std::unique_ptr<Connection> connection;
  int& tables_opened;
};

/// Can make files that have a table of another shape already.
struct StoreDatabase : SqliteDatabase {
  using SqliteDatabase::SqliteDatabase;
  std::unique_ptr<Connection> Open(const std::string& path, int32_t timeout) override {
    ++opened;
    return std::make_unique<CountedConnection>(SqliteDatabase::Open(path, timeout), tables_opened);
  }
  std::unique_ptr<NewDatabase> Create(const std::string& path) override {
    auto made = SqliteDatabase::Create(path);
    if (half_made) made->Structure().AppendTable({"Periods", {{"c"}}});
    return made;
  }
  bool half_made = false;
  int opened = 0;
  int tables_opened = 0;
};

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
    return OpenSettings(host, environment)->Query(table)->Count();
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
  StoreDatabase database{files, locale};
  Host host{memory.host.component, files,        memory.registry, locale,
            memory.clock,          memory.boxes, database,        memory.no_cube,
            memory.no_spreadsheet};
  Environment environment;
  CurrentSettings current;
};

TEST_F(StoreTest, WhatWasSavedIsLoadedByAnySpellingOfItsName) {
  Create();
  struct {
    const char *saved, *saved_again, *loaded;
  } const cases[] = {
      {"Sales", "sales", "  SALES "},
      {"Продажи", "ПРОДАЖИ", "продажи"},
      {"מכירות 2024", "מכירות 2024", " מכירות 2024"},
      {"Größe", "GRÖSSE", "größe"},
      {"ΛΟΓΟΣ", "λογος", "λογοσ"},
      {"Year 1", "Year 1", "[X-Z]e*r #"},  // a name that is asked for is a pattern
      {"50% _x_ \\ \" -- ;", "50% _X_ \\ \" -- ;", "50% _x_ \\ \" -- ;"},
  };
  for (const auto& [saved, saved_again, loaded] : cases) {
    for (const auto& [name, text] : {std::pair(saved, "Old"), {saved_again, "New"}}) {
      SaveDataSource(Source(name, text));
      SavePeriods(host, environment, Year(name, text));
    }
    ASSERT_EQ(Load(loaded, loaded), 0) << saved;
    const DataSourceSetting& source = current.data_source;
    EXPECT_EQ(source.SetName, saved_again);
    EXPECT_EQ(source.MoneySets[0].MoneySet, Value("ש\"ח"));
    EXPECT_EQ(source.MoneySets[12].Measure, "New") << "that of set 0";
    EXPECT_EQ(current.periods.Period(1).PeriodName, "New");
  }
  for (const char* table : {"MoneySetsMeasures", "DataSourceInfo", "Periods"}) {
    EXPECT_EQ(Count(table), static_cast<int32_t>(std::size(cases))) << table;
  }
  SaveDataSource(Source("Sales", ""));
  for (const auto& [cube, first] :
       {std::pair(Value::Array{"First", "Second"}, "First"), {Value::Array{}, ""}}) {
    ReadDataSourceSetting(host, environment, current.data_source, cube, "Sales");
    EXPECT_EQ(current.data_source.MoneySets[12].Measure, first) << "without any, the cube's";
  }
}

TEST_F(StoreTest, ASaveThatFailsChangesNothingAndNamesItsSet) {
  Create();
  ImportSets(host, environment, {Source("Sales", "Old")}, {Year("Y", "Old")});
  const std::string longest(300, 'x');
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"data source \"Sales\"",
       [&] { SaveMoneyMeasures(host, environment, Source("Sales", longest)); }},
      {"period set \"Last\"", [&] {
         ImportSets(host, environment, {Source("Sales"), Source("New")},
                    {Year("Y"), Year("Last", longest)});
       }}};
  for (const auto& [told, save] : cases) {
    const Failure failure = test::FailureOf(save);
    EXPECT_EQ(failure.number(), failure_number::kColumnOverflow) << told;
    EXPECT_THAT(failure.description(), HasSubstr(std::string("(while saving the ") + told + ")"));
    ASSERT_EQ(Load("Sales", "Y"), 0);
    EXPECT_EQ(current.data_source.MoneySets[0].Measure, "Old") << told;
    EXPECT_EQ(current.periods.Period(1).PeriodName, "Old") << told;
    EXPECT_EQ(Count("DataSourceInfo") + Count("Periods"), 2) << told;
  }
}

TEST_F(StoreTest, AnImportOpensItsFileAndEachTableOnceHoweverManySetsItHas) {
  Create();
  std::vector<DataSourceSetting> sources;
  std::vector<PeriodSet> periods;
  for (int i = 0; i < 20; ++i) {
    sources.push_back(Source("Source" + std::to_string(i)));
    periods.push_back(Year("Year" + std::to_string(i)));
  }
  for (const char* sets : {"new", "there already"}) {
    database.opened = database.tables_opened = 0;
    ImportSets(host, environment, sources, periods);
    EXPECT_EQ(database.opened, 1) << sets;
    EXPECT_EQ(database.tables_opened, 3) << sets;
  }
  EXPECT_EQ(Count("DataSourceInfo") + Count("Periods"), 40);
}

TEST_F(StoreTest, ANameThatMeansAnotherSetIsRefusedBeforeTheFileIsOpened) {
  for (const char* name : {"Q#1", "A?", "*", "[a]", "it's", " pad", "pad ", "  "}) {
    const std::function<void()> calls[] = {
        [&] { SavePeriods(host, environment, Year(name)); },
        [&] { SaveDataSourceInfo(host, environment, Source(name)); },
        [&] { SaveMoneyMeasures(host, environment, Source(name)); },
        [&] { DeleteSet(host, environment, name, "Periods"); },
        [&] { DeleteSet(host, environment, name, "DataSource"); },
        [&] { RenameSet(host, environment, "old", name, "Periods"); }};
    for (const auto& call : calls) {
      const Failure failure = test::FailureOf(call);
      EXPECT_EQ(failure.number(), failure_number::kInvalidCall) << name;
      EXPECT_THAT(failure.description(), HasSubstr("vokcube settings rename")) << name;
    }
  }
  Create();
  EXPECT_EQ(Load("Sales'; delete * from Main", "it's"), 9999);
  ASSERT_EQ(memory.boxes.boxes.size(), 3U) << "two reports and the message";
  EXPECT_EQ(memory.boxes.boxes[2].title, test::kExecutable);
}

TEST_F(StoreTest, DeletingTakesTheTablesOfTheKind) {
  Create();
  for (const auto& [kind, of_periods] :
       {std::pair("PERIODS", true), {"DataSource", false}, {"", false}}) {
    SaveDataSource(Source("a b"));
    SavePeriods(host, environment, Year("a b"));
    OpenSettings(host, environment)->OpenTable("Main")->Add({{"SetName", "A B"}});
    DeleteSet(host, environment, "a B", kind);
    for (const std::string table : {"Main", "MoneySetsMeasures", "DataSourceInfo", "Periods"}) {
      const bool deleted = (table == "Periods") == of_periods;
      EXPECT_EQ(Count(table), deleted ? 0 : 1) << kind << ", " << table;
    }
    for (const char* each : {"Periods", "DataSource"}) DeleteSet(host, environment, "a b", each);
  }
  const Value::Array nothing(1);
  EXPECT_EQ(ListDataSources(host, environment).file_dates, nothing) << "one empty entry, not none";
  EXPECT_EQ(ListPeriodSets(host, environment), nothing);
}

TEST_F(StoreTest, AnotherDatabaseIsReadWithWhatItLacksToldWhatIsLeftOutAndNotWrittenTo) {
  Create();  // without quantities
  const auto add = [&](const std::string& table, const Fields& fields) {
    OpenSettings(host, environment)->OpenTable(table)->Add(fields);
  };
  add("DataSourceInfo", {{"SetName", "Sales"}, {"AccFile", "a.idx"}});
  add("MoneySetsMeasures", {{"SetName", "SALES"}, {"Measure3", "Amount"}});
  add("MoneySetsMeasures", {{"SetName", "Gone"}});
  add("Main", {{"SetName", "Sales"}});
  add("Periods", {{"SetName", "P"}});
  OpenSettings(host, environment)
      ->OpenStructure()
      ->AppendColumn("Periods", {"Colour", ColumnType::kText, 0, true});
  const std::string path = folder + "/CubToQel.mdb";
  const std::string bytes = ReadWholeFile(files, path);

  const auto connection = OpenDatabase(host, path);
  const auto sources = ReadAllDataSources(host, *connection);
  ASSERT_EQ(sources.size(), 1U);
  EXPECT_EQ(sources[0].MoneySets[3].Measure + sources[0].MoneySets[3].Qty, "Amount");
  const auto sets = ReadAllPeriodSets(*connection);
  ASSERT_EQ(sets.size(), 1U);
  EXPECT_TRUE(sets[0].Period(1).FromDate.IsZero());
  EXPECT_THAT(LeftOut(host, *connection, sources),
              testing::ElementsAre(HasSubstr("AccFile of the data source \"Sales\", \"a.idx\""),
                                   HasSubstr("table Main (1)"), HasSubstr("money sets of \"Gone\""),
                                   HasSubstr("column Colour of the table Periods")));
  EXPECT_EQ(ReadWholeFile(files, path), bytes);

  SaveDataSourceInfo(host, environment, Source("Old"));
  Fields money = {{"SetName", "Old"}, {"CountMoney", 1}};
  for (int i = 0; i < kMoneySetCount; ++i) money.emplace_back("Measure" + std::to_string(i), "A");
  add("MoneySetsMeasures", money);
  EXPECT_EQ(Load("Old", ""), 9999) << "a run wants the quantities";
  EXPECT_EQ(ReadEditedDataSource(host, environment, "Old")->MoneySets[12].Qty, "");
  EXPECT_EQ(Load("Old", ""), 0) << "a run reads what the window has loaded";
  SaveDataSourceInfo(host, environment, Source("Null"));
  money[0].second = "Null";
  add("MoneySetsMeasures", money);
  EXPECT_EQ(Load("Null", ""), 9999) << "its quantities are";
  SaveMoneyMeasures(host, environment, *ReadEditedDataSource(host, environment, "Null"));
  EXPECT_EQ(Load("Null", ""), 0) << "and what the window has saved";
}

TEST_F(StoreTest, AnOlderFileGetsTheColumnsThatItLacks) {
  const struct {
    const char* table;
    int32_t columns, after_create, after_qty;
  } cases[] = {
      {"MoneySetsMeasures", 28, 41, 54}, {"moneysetsmeasures", 29, 42, 55},
      {"MoneySetsMeasures", 30, 30, 43}, {"MoneySetsMeasures", 42, 42, 55},
      {"MoneySetsMeasures", 43, 43, 43}, {"Periods", 5, 5, 5},
  };
  for (const auto& [table, columns, after_create, after_qty] : cases) {
    std::filesystem::remove(folder + "/CubToQel.mdb");
    const auto made = database.Create(SettingsDatabase(folder));
    TableDefinition older{table, {}};
    for (int i = 0; i < columns; ++i) older.columns.push_back({"c" + std::to_string(i)});
    made->Structure().AppendTable(older);
    made->Keep();
    const auto count = [&, &name = table] {
      return database.OpenStructure(SettingsDatabase(folder))->ColumnCount(name);
    };
    for (int time = 0; time < 2; ++time) Create();
    EXPECT_EQ(count(), after_create) << table << columns;
    for (int time = 0; time < 2; ++time) UpgradeQty(host, environment);
    EXPECT_EQ(count(), after_qty) << table << columns;
  }
}

TEST_F(StoreTest, AFailureOfCreateDbIsShownAndEndsItsStep) {
  database.half_made = true;
  CreateDB(host, environment, folder);
  ASSERT_EQ(memory.boxes.boxes.size(), 2U) << "the next step runs all the same";
  EXPECT_EQ(memory.boxes.boxes[0].title, "Error In CreateTables");
  EXPECT_EQ(memory.boxes.boxes[1].title, "Error In CreateIndexes");
  EXPECT_THAT(memory.boxes.boxes[0].text, HasSubstr(" / ")) << "a number and words";
  EXPECT_TRUE(std::filesystem::is_empty(folder)) << "what is not whole is not kept";
}

TEST_F(StoreTest, ProcessesThatMakeTheFileSaveAndLoadAtOnceLoseNothing) {
  constexpr int kProcesses = 8;
  std::vector<pid_t> children;
  for (int i = 0; i < kProcesses; ++i) {
    children.push_back(test::Start([&, own = "own " + std::to_string(i)] {
      Create();
      for (const auto& name : {own, std::string("shared"), own, std::string("shared")}) {
        SaveDataSource(Source(name));
        SavePeriods(host, environment, Year("shared"));
        if (Load(own, "shared") != 0) throw Failure(1, "lost");
      }
    }));
  }
  for (const pid_t child : children) EXPECT_EQ(test::StatusOf(child), 0);
  EXPECT_EQ(Count("DataSourceInfo"), kProcesses + 1);
  EXPECT_EQ(Count("Periods"), 1);
}

}  // namespace
}  // namespace vok
