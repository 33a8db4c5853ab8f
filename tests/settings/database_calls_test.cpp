// The order and the texts in which the settings database is asked.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "settings/schema.h"
#include "settings/store.h"
#include "settings/writer.h"
#include "tests/support/memory_host.h"
#include "tests/support/recording_database.h"

namespace vok {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Lines = std::vector<std::string>;

constexpr char kText[] = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/s\\CubToQel.mdb";

class DatabaseCallsTest : public testing::Test {
 protected:
  DatabaseCallsTest() { environment.SettingsFolder = "/s"; }

  /// What was recorded, without the connecting.
  Lines Statements() const {
    Lines rest;
    for (const std::string& line : lines) {
      if (!line.starts_with("text ") && !line.starts_with("connect") &&
          !line.starts_with("timeout ")) {
        rest.push_back(line);
      }
    }
    return rest;
  }
  static Lines Insertion(const std::string& table, const Lines& fields) {
    Lines calls = {"cursor 3", "attach", "type 2", "lock 3", "open '" + table + "' -1 -1 -1",
                   "add"};
    calls.insert(calls.end(), fields.begin(), fields.end());
    calls.insert(calls.end(), {"update", "close"});
    return calls;
  }
  static Lines Deletion(const std::string& statement) {
    return {"command on connection", "command " + statement, "execute -1"};
  }
  static Lines Join(const std::vector<Lines>& parts) {
    Lines all;
    for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
  }

  test::MemoryHost memory;
  test::RecordingDatabase database;
  Host host = memory.On(database);
  Environment environment;
  Lines& lines = database.record.lines;
};

TEST_F(DatabaseCallsTest, ConnectingSetsTheConnectionUpAndOpensIt) {
  OpenSettings(host, environment);
  EXPECT_THAT(lines, ElementsAre(std::string("text ") + kText, "connection cursor 3", "timeout 20",
                                 "connect '' '' -1"));
}

TEST_F(DatabaseCallsTest, RecordSetsAndCommandsAreOpenedInTheirOrder) {
  objRs store = OpenSettings(host, environment);
  store.SQL = "Periods";
  std::unique_ptr<Recordset> kept;
  struct {
    const char* what;
    std::function<void()> call;
    Lines calls;
  } const cases[] = {
      {"GetRs",
       [&] { store.GetRs(); },
       {"cursor 3", "attach", "type 2", "lock 3", "open 'Periods' -1 -1 -1"}},
      {"GetrsOlap",
       [&] {
         const Recordset& given = store.GetrsOlap(kept);
         EXPECT_EQ(&given, kept.get());
       },
       {"cursor 3", "attach", "type 2", "lock 3", "open 'Periods' -1 -1 -1"}},
      {"GetRsReadOnly",
       [&] { store.GetRsReadOnly(); },
       {"cursor 3", "attach", "type 3", "lock 1", "open 'Periods' -1 -1 -1", "detach"}},
      {"RunCommand", [&] { store.RunCommand(); }, Deletion("Periods")},
  };
  for (const auto& [what, call, calls] : cases) {
    lines.clear();
    call();
    EXPECT_EQ(lines, calls) << what;
  }
}

TEST_F(DatabaseCallsTest, NothingIsOpenedWithoutAConnection) {
  objRs store(database);
  std::unique_ptr<Recordset> kept;
  const std::function<void()> calls[] = {[&] { store.GetRs(); }, [&] { store.GetRsReadOnly(); },
                                         [&] { store.GetrsOlap(kept); },
                                         [&] { store.RunCommand(); }};
  for (const auto& call : calls) {
    try {
      call();
      ADD_FAILURE() << "no failure";
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number(), -2147221406);
      EXPECT_EQ(failure.description(), "No valid Connection");
      EXPECT_EQ(failure.source(), "GetRs");
    }
  }
  database.record.failing = "connect '' '' -1";
  EXPECT_THROW(store.ADOConnect(kText, 20), Failure);
  EXPECT_THROW(store.GetRs(), Failure) << "a connection that did not open is none";
}

TEST_F(DatabaseCallsTest, ANewFileGetsItsTablesAndIndexes) {
  CreateDB(host, environment, "/s\\");
  ASSERT_EQ(lines.size(), 12U);
  EXPECT_EQ(lines[0],
            "create Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/s\\CubToQel.mdb;"
            "Jet OLEDB:Database Password=;Jet OLEDB:Engine Type=5;");
  EXPECT_EQ(lines[1],
            "table DataSourceInfo: SetName/202/255 VarnelMDB/202/255 CubeFile/202/255 "
            "CubeName/202/255 OBS/202/255 ActFile/202/255 AccFile/202/255");
  EXPECT_EQ(lines[2],
            "table Main: SetName/202/255 Periods/202/255 DataSource/202/255 "
            "MoneySetMeasures/202/255 LastSaved/11/0");
  EXPECT_THAT(lines[3], testing::StartsWith("table MoneySetsMeasures: SetName/202/255 "
                                            "CountMoney/3/0/null MoneySets0/202/255/null "));
  EXPECT_THAT(lines[3], HasSubstr(" MoneySets12/202/255/null Measure0/202/255/null "));
  EXPECT_THAT(lines[3], HasSubstr(" Measure12/202/255/null IsCalculated0/11/0 "));
  EXPECT_THAT(lines[4], HasSubstr(": SetName/202/255 PeriodName1/202/255/null "));
  EXPECT_THAT(lines[4], HasSubstr(" PeriodName12/202/255/null FromDate1/7/0/null "));
  EXPECT_THAT(lines[4], HasSubstr(" UntillDate12/7/0/null includeOpenBalans1/11/0 "));
  EXPECT_THAT(
      Lines(lines.begin() + 5, lines.end()),
      ElementsAre("index DataSourceInfo.PrimaryKey(SetName) primary unique",
                  "index Main.PrimaryKey(SetName) primary unique",
                  "index Main.MoneySetsMeasuresMain(MoneySetMeasures) nulls",
                  "index Main.NameId(SetName) nulls", "index Main.PeriodsMain(Periods) nulls",
                  "index MoneySetsMeasures.PrimaryKey(SetName) primary unique",
                  "index Periods.PrimaryKey(SetName) primary unique"));
  EXPECT_TRUE(memory.boxes.boxes.empty());
}

TEST_F(DatabaseCallsTest, AFailureOfCreateDbIsShownAndEndsItsStep) {
  constexpr char kMain[] =
      "table Main: SetName/202/255 Periods/202/255 DataSource/202/255 MoneySetMeasures/202/255 "
      "LastSaved/11/0";
  struct {
    std::string failing;
    const char* title;
    std::size_t lines;
    bool exists;
  } const cases[] = {
      {"create Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/s\\CubToQel.mdb;"
       "Jet OLEDB:Database Password=;Jet OLEDB:Engine Type=5;",
       "", 1, false},
      {kMain, "Error In CreateTables", 3 + 7, false},
      {"index Main.NameId(SetName) nulls", "Error In CreateIndexes", 5 + 4, false},
      {"column MoneySetsMeasures IsCalculated3/11/0", "", 2 + 4, true},
  };
  for (const auto& [failing, title, count, exists] : cases) {
    if (exists) memory.files.files["/s\\CubToQel.mdb"] = "";
    database.record = {{}, {{"MoneySetsMeasures", 28}}, failing};
    memory.boxes.boxes.clear();
    CreateDB(host, environment, "/s");
    EXPECT_EQ(lines.size(), count) << failing;
    ASSERT_EQ(memory.boxes.boxes.size(), 1U) << failing;
    EXPECT_EQ(memory.boxes.boxes[0], (MessageBox{"-2147467259 / refused", title, MessageIcon::kNone,
                                                 MessageButtons::kOk, "", 0}));
  }
}

TEST_F(DatabaseCallsTest, AnOlderFileGetsTheColumnsThatItLacks) {
  memory.files.files["/s\\CubToQel.mdb"] = "";
  struct {
    const char* table;
    int32_t columns, after_create, after_qty;
  } const cases[] = {
      {"MoneySetsMeasures", 28, 41, 54},
      {"moneysetsmeasures", 29, 42, 55},
      {"MoneySetsMeasures", 30, 30, 43},
      {"MoneySetsMeasures", 42, 42, 55},
      {"MoneySetsMeasures", 43, 43, 43},
      {"MoneySetsMeasures", 54, 54, 54},
      {"Periods", 5, 5, 5},
  };
  for (const auto& [table, columns, after_create, after_qty] : cases) {
    database.record = {{}, {{table, columns}}, ""};
    for (int time = 0; time < 2; ++time) {
      CreateDB(host, environment, "/s");
      EXPECT_EQ(database.record.tables[table], after_create) << table << columns;
    }
    EXPECT_EQ(lines[0],
              "connect 'Provider=Microsoft.Jet.OLEDB.4.0;;Data Source=/s\\CubToQel.mdb' '' -1");
    for (int time = 0; time < 2; ++time) {
      UpgradeQty(host, environment);
      EXPECT_EQ(database.record.tables[table], after_qty) << table << columns;
    }
  }
  database.record = {{}, {{"MoneySetsMeasures", 28}}, ""};
  UpgradeQty(host, environment);
  EXPECT_EQ(database.record.tables["MoneySetsMeasures"], 54) << "not the quantities alone";
}

TEST_F(DatabaseCallsTest, SavingPeriodsReplacesTheRowWithAllItsFields) {
  PeriodSet set;
  set.SetName = " Год ";
  set.Period(1) = {"Jan", Date{45292}, Date{45322}, false};
  set.Period(12).IncludeOpenBalance = true;
  Lines fields = {"SetName= Год ", "PeriodName1=Jan"};
  const auto add = [&](const char* name, int first, const char* value) {
    for (int i = first; i <= 12; ++i) fields.push_back(name + std::to_string(i) + "=" + value);
  };
  add("PeriodName", 2, "");
  fields.emplace_back("FromDate1=#45292#");
  add("FromDate", 2, "#0#");
  fields.emplace_back("UntillDate1=#45322#");
  add("UntillDate", 2, "#0#");
  add("includeOpenBalans", 1, "False");
  fields.back() = "includeOpenBalans12=True";

  SavePeriods(host, environment, set);
  EXPECT_EQ(Statements(), Join({{"begin"},
                                Deletion("delete * from Periods WHERE setname like 'Год'"),
                                Insertion("Periods", fields),
                                {"commit"}}));
  lines.clear();
  SavePeriods(host, environment, {});
  EXPECT_THAT(lines,
              testing::Contains("command delete * from Periods WHERE setname like 'Periods'"));
  EXPECT_THAT(lines, testing::Contains("SetName=Periods"));
}

TEST_F(DatabaseCallsTest, SavingADataSourceReplacesItsTwoRowsTogether) {
  database.record.tables["MoneySetsMeasures"] = 54;
  DataSourceSetting setting{"S", "c.cub", "QEL", "Ledger1", "act", "acc", "host.mdb", 2, {}};
  setting.MoneySets[0] = {Value("NIS"), "Amount", "Units", true};
  setting.MoneySets[5] = {Value(""), "Other", "", false};
  Lines money = {"SetName=S", "CountMoney=2"};
  for (int i = 0; i <= 12; ++i) {
    const std::string n = std::to_string(i);
    money.push_back("Measure" + n + (i == 5 ? "=Other" : "=Amount"));
    money.push_back("IsCalculated" + n + (i == 0 ? "=True" : "=False"));
  }
  for (int i = 0; i <= 12; ++i) {
    money.push_back("MoneySets" + std::to_string(i) + (i == 0 ? "=NIS" : i == 5 ? "=" : "=NULL"));
  }
  for (int i = 0; i <= 12; ++i)
    money.push_back("Qty" + std::to_string(i) + (i == 0 ? "=Units" : "="));
  const Lines info_part = Join(
      {Deletion("delete * from DataSourceInfo WHERE setname like 'S'"),
       Insertion("DataSourceInfo", {"SetName=S", "VarnelMDB=host.mdb", "CubeFile=c.cub",
                                    "CubeName=QEL", "OBs=Ledger1", "ActFile=act", "AccFile="})});
  const Lines money_part = Join({Deletion("delete * from MoneySetsMeasures WHERE setname like 'S'"),
                                 Insertion("MoneySetsMeasures", money)});
  const Lines upgrade = {"catalog on connection"};
  using SaveFunction = void (*)(const Host&, const Environment&, const DataSourceSetting&);
  struct {
    SaveFunction save;
    Lines calls;
  } const cases[] = {
      {SaveDataSourceInfo, Join({{"begin"}, info_part, {"commit"}})},
      {SaveMoneyMeasures, Join({upgrade, {"begin"}, money_part, {"commit"}})},
      {SaveDataSource, Join({upgrade, {"begin"}, info_part, money_part, {"commit"}})},
  };
  for (const auto& [save, calls] : cases) {
    lines.clear();
    save(host, environment, setting);
    EXPECT_EQ(Statements(), calls);
  }
}

TEST_F(DatabaseCallsTest, ASaveThatFailsIsUndoneAndNamesItsSet) {
  DataSourceSetting setting;
  setting.SetName = "S";
  for (const char* failing :
       {"execute -1", "add", "Qty12=", "update", "open 'MoneySetsMeasures' -1 -1 -1", "commit"}) {
    database.record = {{}, {{"MoneySetsMeasures", 54}}, failing};
    try {
      SaveDataSource(host, environment, setting);
      ADD_FAILURE() << failing;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number(), failure_number::kUnspecified);
      EXPECT_EQ(failure.description(), "refused (while saving the data source \"S\")");
      EXPECT_EQ(failure.source(), "provider");
    }
    EXPECT_EQ(lines.back(), "rollback") << failing;
  }
  EXPECT_THROW(SaveDataSource(host, environment, {}), Failure) << "no name";
}

TEST_F(DatabaseCallsTest, DeletingTakesTheTablesOfTheKind) {
  const Lines periods = Deletion("DELETE * FROM Periods WHERE setname LIKE 'a b'");
  const Lines source = Join({Deletion("DELETE * FROM Main WHERE setname LIKE 'a b'"),
                             Deletion("DELETE * FROM MoneySetsMeasures WHERE setname LIKE 'a b'"),
                             Deletion("DELETE * FROM DataSourceInfo WHERE setname LIKE 'a b'")});
  for (const char* kind : {"Periods", "periods", "PERIODS"}) {
    lines.clear();
    DeleteSet(host, environment, " a b ", kind);
    EXPECT_EQ(Statements(), periods) << kind;
  }
  for (const char* kind : {"DataSource", "Period", ""}) {
    lines.clear();
    DeleteSet(host, environment, " a b ", kind);
    EXPECT_EQ(Statements(), source) << kind;
  }
}

}  // namespace
}  // namespace vok
