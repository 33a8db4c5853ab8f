// The order and the texts in which the settings database is asked.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "settings/edited_sets.h"
#include "settings/exact_sets.h"
#include "settings/reader.h"
#include "settings/schema.h"
#include "settings/store.h"
#include "settings/writer.h"
#include "tests/support/failures.h"
#include "tests/support/memory_host.h"
#include "tests/support/recording_database.h"

namespace vok {
namespace {

using test::FailureOf;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using Lines = std::vector<std::string>;

const std::string kText = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/s\\CubToQel.mdb";
const std::string kCreate =
    "create " + kText + ";Jet OLEDB:Database Password=;Jet OLEDB:Engine Type=5;";
const std::string kMain =
    "table Main: SetName/202/255 Periods/202/255 DataSource/202/255 MoneySetMeasures/202/255 "
    "LastSaved/11/0";

/// Name1<rest>, … one for each number.
Lines Each(const std::string& name, int first, int last, const std::string& rest) {
  Lines texts;
  for (int i = first; i <= last; ++i) texts.push_back(name + std::to_string(i) + rest);
  return texts;
}

Lines Join(const std::vector<Lines>& parts) {
  Lines all;
  for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

Lines Opening(const std::string& table) {
  return {"cursor 3", "attach", "type 2", "lock 3", "open '" + table + "' -1 -1 -1"};
}
Lines Insertion(const std::string& table, const std::vector<Lines>& fields) {
  return Join({Opening(table), {"add"}, Join(fields), {"update", "close"}});
}
Lines Execution(const std::string& statement) {
  return {"command on connection", "command " + statement, "execute -1"};
}

class DatabaseCallsTest : public testing::Test {
 protected:
  DatabaseCallsTest() {
    environment.SettingsFolder = "/s";
    MoneyColumns(54);
  }

  /// Only the table of money sets is there, with so many columns.
  void MoneyColumns(int32_t columns, const std::string& failing = "") {
    database.record = {{}, {{"MoneySetsMeasures", columns}}, failing};
  }
  /// What `call` asks for, without the connecting.
  Lines Statements(const std::function<void()>& call) {
    lines.clear();
    call();
    std::erase_if(lines, [](const std::string& line) {
      return line.starts_with("text ") || line.starts_with("connect") ||
             line.starts_with("timeout ");
    });
    return lines;
  }

  test::MemoryHost memory;
  test::RecordingDatabase database;
  Host host = memory.On(database);
  Environment environment;
  Lines& lines = database.record.lines;
};

TEST_F(DatabaseCallsTest, RecordSetsAndCommandsAreOpenedInTheirOrder) {
  objRs store = OpenSettings(host, environment);
  EXPECT_THAT(
      lines, ElementsAre("text " + kText, "connection cursor 3", "timeout 20", "connect '' '' -1"));
  store.SQL = "Periods";
  std::unique_ptr<Recordset> kept;
  EXPECT_EQ(Statements([&] { store.GetRs(); }), Opening("Periods"));
  EXPECT_EQ(Statements([&] { store.GetrsOlap(kept); }), Opening("Periods"));
  EXPECT_NE(kept, nullptr);
  EXPECT_THAT(
      Statements([&] { store.GetRsReadOnly(); }),
      ElementsAre("cursor 3", "attach", "type 3", "lock 1", "open 'Periods' -1 -1 -1", "detach"));
  EXPECT_EQ(Statements([&] { store.RunCommand(); }), Execution("Periods"));
}

TEST_F(DatabaseCallsTest, NothingIsOpenedWithoutAConnection) {
  objRs store(database);
  std::unique_ptr<Recordset> kept;
  const std::function<void()> calls[] = {[&] { store.GetRs(); }, [&] { store.GetRsReadOnly(); },
                                         [&] { store.GetrsOlap(kept); },
                                         [&] { store.RunCommand(); }};
  database.record.failing = "connect '' '' -1";
  EXPECT_THROW(store.ADOConnect(kText, 20), Failure);
  for (const auto& call : calls) {
    const Failure failure = FailureOf(call);
    EXPECT_EQ(failure.number(), -2147221406);
    EXPECT_EQ(failure.source() + ": " + failure.description(), "GetRs: No valid Connection");
  }
}

TEST_F(DatabaseCallsTest, SetsAreReadByTheseTextsAndAWindowsDataSourceAfterTheUpgrade) {
  const auto open = [](const std::string& text) { return "open '" + text + "' -1 -1 -1"; };
  const Lines qty = Each("column MoneySetsMeasures Qty", 0, 12, "/202/0");
  const struct {
    std::function<void()> read;
    Lines lines;
  } cases[] = {
      {[&] { ListPeriodSets(host, environment); }, {open("SELECT * FROM Periods ")}},
      {[&] { ListDataSources(host, environment); },
       {open("SELECT SetName,CubeFile FROM DataSourceInfo ")}},
      {[&] { ReadEditedPeriods(host, environment, " Год "); },
       {open("SELECT * FROM Periods WHERE setname like 'Год'")}},
      {[&] { ReadEditedDataSource(host, environment, "S"); },
       Join({qty, {open("SELECT * FROM DataSourceInfo WHERE setname like 'S'")}})},
  };
  for (const auto& [read, expected] : cases) {
    MoneyColumns(41);
    Lines asked = Statements(read);
    std::erase_if(asked, [](const std::string& line) {
      return !line.starts_with("open ") && !line.starts_with("column ");
    });
    EXPECT_EQ(asked, expected);
  }
}

TEST_F(DatabaseCallsTest, ANewFileGetsItsTablesAndIndexes) {
  CreateDB(host, environment, "/s\\");
  const auto table = [](const std::string& name, const std::vector<Lines>& columns) {
    std::string line = "table " + name + ": SetName/202/255";
    for (const std::string& column : Join(columns)) line += " " + column;
    return line;
  };
  const std::string text = "/202/255/null";
  const Lines expected = {
      kCreate,
      table("DataSourceInfo", {{"VarnelMDB/202/255", "CubeFile/202/255", "CubeName/202/255",
                                "OBS/202/255", "ActFile/202/255", "AccFile/202/255"}}),
      kMain,
      table("MoneySetsMeasures", {{"CountMoney/3/0/null"},
                                  Each("MoneySets", 0, 12, text),
                                  Each("Measure", 0, 12, text),
                                  Each("IsCalculated", 0, 12, "/11/0")}),
      table("Periods",
            {Each("PeriodName", 1, 12, text), Each("FromDate", 1, 12, "/7/0/null"),
             Each("UntillDate", 1, 12, "/7/0/null"), Each("includeOpenBalans", 1, 12, "/11/0")}),
      "index DataSourceInfo.PrimaryKey(SetName) primary unique",
      "index Main.PrimaryKey(SetName) primary unique",
      "index Main.MoneySetsMeasuresMain(MoneySetMeasures) nulls",
      "index Main.NameId(SetName) nulls",
      "index Main.PeriodsMain(Periods) nulls",
      "index MoneySetsMeasures.PrimaryKey(SetName) primary unique",
      "index Periods.PrimaryKey(SetName) primary unique",
      "keep"};
  EXPECT_EQ(lines, expected);
  EXPECT_TRUE(memory.boxes.boxes.empty());
}

TEST_F(DatabaseCallsTest, AFailureOfCreateDbIsShownAndEndsItsStep) {
  struct {
    std::string failing;
    const char* title;
    std::size_t lines;
    bool exists;
  } const cases[] = {
      {kCreate, "", 1, false},
      {kMain, "Error In CreateTables", 3 + 7, false},
      {"index Main.NameId(SetName) nulls", "Error In CreateIndexes", 5 + 4, false},
      {"connect 'Provider=Microsoft.Jet.OLEDB.4.0;;Data Source=/s\\CubToQel.mdb' '' -1", "", 1,
       true},
      {"column MoneySetsMeasures IsCalculated3/11/0", "", 2 + 4, true},
  };
  for (const auto& [failing, title, count, exists] : cases) {
    if (exists) memory.files.files["/s\\CubToQel.mdb"] = "";
    MoneyColumns(28, failing);
    memory.boxes.boxes.clear();
    CreateDB(host, environment, "/s");
    EXPECT_EQ(lines.size(), count) << failing;
    EXPECT_THAT(lines, Not(Contains("keep"))) << failing;
    EXPECT_THAT(memory.boxes.boxes,
                ElementsAre(MessageBox{"-2147467259 / refused", title, MessageIcon::kNone,
                                       MessageButtons::kOk, "", 0}))
        << failing;
  }
}

TEST_F(DatabaseCallsTest, AnOlderFileGetsTheColumnsThatItLacks) {
  memory.files.files["/s\\CubToQel.mdb"] = "";
  struct {
    const char* table;
    int32_t columns, after_create, after_qty;
  } const cases[] = {
      {"MoneySetsMeasures", 28, 41, 54}, {"moneysetsmeasures", 29, 42, 55},
      {"MoneySetsMeasures", 30, 30, 43}, {"MoneySetsMeasures", 42, 42, 55},
      {"MoneySetsMeasures", 43, 43, 43}, {"Periods", 5, 5, 5},
  };
  for (const auto& [table, columns, after_create, after_qty] : cases) {
    database.record = {{}, {{table, columns}}, ""};
    for (int time = 0; time < 2; ++time) CreateDB(host, environment, "/s");
    EXPECT_EQ(database.record.tables[table], after_create) << table << columns;
    for (int time = 0; time < 2; ++time) UpgradeQty(host, environment);
    EXPECT_EQ(database.record.tables[table], after_qty) << table << columns;
  }
  MoneyColumns(28);
  UpgradeQty(host, environment);
  EXPECT_EQ(database.record.tables["MoneySetsMeasures"], 54) << "not the quantities alone";
}

TEST_F(DatabaseCallsTest, SavingPeriodsReplacesTheRowWithAllItsFields) {
  PeriodSet set;
  set.SetName = "Год";
  set.Period(1) = {"Jan", Date{45292}, Date{45322}, false};
  set.Period(12).IncludeOpenBalance = true;
  EXPECT_EQ(Statements([&] { SavePeriods(host, environment, set); }),
            Join({{"begin"},
                  Execution("delete * from Periods WHERE setname like 'Год'"),
                  Insertion("Periods", {{"SetName=Год", "PeriodName1=Jan"},
                                        Each("PeriodName", 2, 12, "="),
                                        {"FromDate1=#45292#"},
                                        Each("FromDate", 2, 12, "=#0#"),
                                        {"UntillDate1=#45322#"},
                                        Each("UntillDate", 2, 12, "=#0#"),
                                        Each("includeOpenBalans", 1, 11, "=False"),
                                        {"includeOpenBalans12=True"}}),
                  {"commit"}}));
  EXPECT_THAT(Statements([&] { SavePeriods(host, environment, {}); }),
              AllOf(Contains("command delete * from Periods WHERE setname like 'Periods'"),
                    Contains("SetName=Periods")));
}

TEST_F(DatabaseCallsTest, SavingADataSourceReplacesItsTwoRowsTogether) {
  DataSourceSetting setting{"S", "c.cub", "QEL", "Ledger1", "act", "acc", "host.mdb", 2, {}};
  setting.MoneySets[0] = {Value("NIS"), "Amount", "Units", true};
  setting.MoneySets[5] = {Value(""), "Other", "", false};
  Lines measures = {"Measure0=Amount", "IsCalculated0=True"};
  for (int i = 1; i <= 12; ++i) {
    const std::string n = std::to_string(i);
    measures.push_back("Measure" + n + (i == 5 ? "=Other" : "=Amount"));
    measures.push_back("IsCalculated" + n + "=False");
  }
  const Lines info_row = {"SetName=S",   "VarnelMDB=host.mdb", "CubeFile=c.cub", "CubeName=QEL",
                          "OBs=Ledger1", "ActFile=act",        "AccFile="};
  const Lines money_row = Join({{"SetName=S", "CountMoney=2"},
                                measures,
                                {"MoneySets0=NIS"},
                                Each("MoneySets", 1, 4, "=NULL"),
                                {"MoneySets5="},
                                Each("MoneySets", 6, 12, "=NULL"),
                                {"Qty0=Units"},
                                Each("Qty", 1, 12, "=")});
  EXPECT_EQ(Statements([&] { SaveDataSourceInfo(host, environment, setting); }),
            Join({{"begin"},
                  Execution("delete * from DataSourceInfo WHERE setname like 'S'"),
                  Insertion("DataSourceInfo", {info_row}),
                  {"commit"}}));
  EXPECT_EQ(Statements([&] { SaveMoneyMeasures(host, environment, setting); }),
            Join({{"catalog on connection", "begin"},
                  Execution("delete * from MoneySetsMeasures WHERE setname like 'S'"),
                  Insertion("MoneySetsMeasures", {money_row}),
                  {"commit"}}));
  EXPECT_EQ(Statements([&] {
              ImportSets(host, environment, {setting, setting}, {});
            }),
            Join({{"begin change", "catalog on connection"},
                  Opening("DataSourceInfo"),
                  Opening("MoneySetsMeasures"),
                  Opening("Periods"),
                  {"add"},
                  info_row,
                  {"update", "add"},
                  money_row,
                  {"update"},
                  {"add"},
                  info_row,
                  {"update", "add"},
                  money_row,
                  {"update", "commit"}}))
      << "all sets on one connection, each table opened once";
}

TEST_F(DatabaseCallsTest, ASaveThatFailsIsUndoneAndNamesItsSet) {
  DataSourceSetting setting;
  setting.SetName = "S";
  const std::function<void()> save = [&] { SaveMoneyMeasures(host, environment, setting); };
  const std::function<void()> import = [&] { ImportSets(host, environment, {setting}, {}); };
  const std::string named = " (while saving the data source \"S\")";
  const struct {
    const char* failing;
    const std::function<void()>& call;
    std::string told;
  } cases[] = {
      {"execute -1", save, named}, {"open 'MoneySetsMeasures' -1 -1 -1", save, named},
      {"add", save, named},        {"Qty12=", save, named},
      {"update", save, named},     {"commit", save, named},
      {"Qty12=", import, named},   {"update", import, named},
      {"commit", import, ""},      {"open 'Periods' -1 -1 -1", import, ""},
  };
  for (const auto& [failing, call, told] : cases) {
    MoneyColumns(54, failing);
    const Failure failure = FailureOf(call);
    EXPECT_EQ(failure.number(), failure_number::kUnspecified) << failing;
    EXPECT_EQ(failure.source() + ": " + failure.description(), "provider: refused" + told);
    EXPECT_EQ(lines.back(), "rollback") << failing;
  }
}

TEST_F(DatabaseCallsTest, ANameThatMeansAnotherSetIsRefusedBeforeAnythingIsSent) {
  for (const char* name : {"Q#1", "A?", "*", "[a]", "it's", " pad", "pad ", "  "}) {
    PeriodSet set;
    DataSourceSetting setting;
    set.SetName = setting.SetName = name;
    const std::function<void()> calls[] = {
        [&] { SavePeriods(host, environment, set); },
        [&] { SaveDataSourceInfo(host, environment, setting); },
        [&] { SaveMoneyMeasures(host, environment, setting); },
        [&] { DeleteSet(host, environment, name, "Periods"); },
        [&] { DeleteSet(host, environment, name, "DataSource"); },
        [&] { RenameSet(host, environment, "old", name, "Periods"); }};
    for (const auto& call : calls) {
      const Failure failure = FailureOf(call);
      EXPECT_EQ(failure.number(), failure_number::kInvalidCall) << name;
      EXPECT_THAT(failure.description(), testing::HasSubstr("vokcube settings rename")) << name;
      EXPECT_THAT(lines, testing::IsEmpty()) << name;
    }
  }
}

TEST_F(DatabaseCallsTest, DeletingTakesTheTablesOfTheKind) {
  const Lines periods = Execution("DELETE * FROM Periods WHERE setname LIKE 'a b'");
  const Lines source = Join({Execution("DELETE * FROM Main WHERE setname LIKE 'a b'"),
                             Execution("DELETE * FROM MoneySetsMeasures WHERE setname LIKE 'a b'"),
                             Execution("DELETE * FROM DataSourceInfo WHERE setname LIKE 'a b'")});
  for (const auto& [kind, statements] :
       {std::pair("Periods", periods), std::pair("PERIODS", periods),
        std::pair("DataSource", source), std::pair("Period", source), std::pair("", source)}) {
    EXPECT_EQ(Statements([&] { DeleteSet(host, environment, "a b", kind); }), statements) << kind;
  }
}

}  // namespace
}  // namespace vok
