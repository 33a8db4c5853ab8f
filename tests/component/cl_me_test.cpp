#include "component/cl_me.h"

#include <gmock/gmock.h>

#include "tests/support/component_host.h"

namespace vok::test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

/// Writes dates as year-month.
struct MonthLocale : SimpleLocale {
  std::string ShortDate(Date date) const override {
    return std::to_string(date.Year()) + "-" + std::to_string(date.Month());
  }
};

struct ClMeTest : ::testing::Test, ComponentHost {
  MonthLocale month_locale;
  Host dated{memory.host.component, memory.files, memory.registry, month_locale, memory.clock,
             memory.boxes,          database,     services,        sheets};
  Publics publics;
  clMe component{dated, publics};

  Value Run() {
    std::string data_source = "Sales", periods = "2010", output = "out";
    return component.RunQuery(data_source, periods, output);
  }
};

TEST_F(ClMeTest, VersionIsPlainDecimals) { EXPECT_EQ(component.Version(), "16.8.28"); }

TEST_F(ClMeTest, ASuccessfulRunGivesThePeriodsAndTheNames) {
  SetPeriod(1, 1, 3, true);
  SetPeriod(12, 4, 4);
  database.tables["Periods"][0]["UntillDate2"] = Date::FromCivil(2009, 1, 1);
  Value::TextArray names(13), ranges(13);
  names[1] = "P1";
  names[12] = "P12";
  ranges[1] = "2010-1 - 2010-3";
  ranges[2] = " - 2009-1";
  ranges[12] = "2010-4 - 2010-4";
  Value::Int16Array flags(13);
  flags[1] = -1;
  EXPECT_EQ(Run(), Value(Value::Array{names, flags, ranges, "Sales", "2010"}));
}

TEST_F(ClMeTest, GetSetNamesListsATableInItsOrderAndMakesAMissingDatabase) {
  publics.environment.SettingsFolder = "component";
  memory.registry.SetFolder("elsewhere");
  database.tables["Periods"] = {{{"SetName", "b"}}, {{"SetName", "a"}}, {{"SetName", "c"}}};
  database.tables["DataSourceInfo"].clear();
  Value names = "before";
  std::string table = "Periods";
  EXPECT_EQ(component.GetSetNames(names, table), 0);
  EXPECT_EQ(names, Value(Value::Array{"b", "a", "c"}));
  EXPECT_EQ(publics.environment.SettingsFolder, "component") << "it is not found afresh";
  EXPECT_THAT(database.record.lines,
              AllOf(Each(Not(StartsWith("create "))), Contains(StartsWith("connect '")).Times(1)))
      << "a file that is there is opened to be read alone";
  table = "DataSourceInfo";
  memory.files.files.clear();
  EXPECT_EQ(component.GetSetNames(names, table), 0);
  EXPECT_EQ(names, Value(Value::Array(1)));
  EXPECT_THAT(database.record.lines,
              AllOf(Contains(StartsWith("create ")),
                    Contains(StartsWith("text Provider=Microsoft.Jet.OLEDB.4.0;"
                                        "Data Source=component\\CubToQel.mdb"))));
  table = "Nothing";
  EXPECT_THROW(component.GetSetNames(names, table), Failure);
  EXPECT_THAT(memory.boxes.boxes, IsEmpty());
}

TEST_F(ClMeTest, QinfoGivesFourLists) {
  memory.registry.SetFolder("set");
  memory.files.files["set\\CubToQel.mdb"] = "";
  memory.files.files["sales.cub"] = "";
  memory.files.modified["sales.cub"] = Date{45000.5};
  database.tables["DataSourceInfo"].push_back({{"SetName", "Old"}, {"CubeFile", "gone.cub"}});
  EXPECT_EQ(
      component.Qinfo(),
      Value(Value::Array{Value::Array{"2010"}, Value::Array{"Sales", "Old"},
                         Value::Array{"sales.cub", ""}, Value::Array{Date{45000.5}, Value()}}));
  EXPECT_EQ(publics.environment.SettingsFolder, "set");
}

TEST_F(ClMeTest, QinfoIsEmptyAfterAFailure) {
  database.tables.erase("Periods");
  EXPECT_TRUE(component.Qinfo().IsEmpty());
  memory.files.files.clear();
  EXPECT_TRUE(component.Qinfo().IsEmpty());
  EXPECT_THAT(memory.boxes.boxes, IsEmpty());
}

/// Fails with a number, 0 for none.
struct FakeWindow : QueryWindow {
  FakeWindow(int32_t number, std::string& calls) : number_(number), calls_(calls) {}
  ~FakeWindow() override { calls_ += "unload"; }
  Value Initialize(std::string& name) override {
    calls_ += "initialize " + name + ",";
    if (number_ != 0) throw Failure(number_, "refused");
    return "result";
  }
  void Show() override { calls_ += "show,"; }
  int32_t number_;
  std::string& calls_;
};

TEST_F(ClMeTest, ShowQCformReportsThroughErrorAlone) {
  memory.files.files["component\\VarnelHeb.Chm"] = "";
  const struct {
    int32_t failing;
    Value result;
    int32_t error;
    const char* calls;
  } cases[] = {
      {0, "result", -7, "initialize db,show,unload"},
      {13, Value::Array(1), 13, "initialize db,unload"},
      {-2147467259, Value(), -7, "initialize db,unload"},
  };
  for (const auto& [failing, result, error, expected] : cases) {
    std::string calls, name = "db";
    int32_t number = -7;
    clMe windowed(dated, publics, [&, fails = failing](const Host&, Publics&) {
      return std::make_unique<FakeWindow>(fails, calls);
    });
    EXPECT_EQ(windowed.ShowQCform(number, name), result) << failing;
    EXPECT_EQ(number, error) << failing;
    EXPECT_EQ(calls, expected) << failing;
  }
  EXPECT_EQ(publics.help_file, "component\\VarnelHeb.Chm");
  EXPECT_THAT(memory.boxes.boxes, IsEmpty());
}

TEST_F(ClMeTest, ShowQCformWithoutWindowsFailsAndShowsNothing) {
  int32_t error = 0;
  std::string name = "db";
  EXPECT_EQ(component.ShowQCform(error, name), Value(Value::Array(1)));
  EXPECT_EQ(error, failure_number::kNotSupported);
  EXPECT_THAT(publics.status.LastError, ::testing::HasSubstr("no windows"));
  EXPECT_EQ(publics.help_file, "");
  EXPECT_THAT(memory.boxes.boxes, IsEmpty());
}

}  // namespace
}  // namespace vok::test
