#include "component/cl_me.h"

#include <gmock/gmock.h>

#include "tests/support/component_host.h"

namespace vok::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Writes dates as year-month.
struct MonthLocale : SimpleLocale {
  std::string ShortDate(Date date) const override {
    return std::to_string(date.Year()) + "-" + std::to_string(date.Month());
  }
};

struct ClMeTest : ::testing::Test, ComponentHost {
  MonthLocale month_locale;
  Host dated = memory.On(database, cube, sheets, month_locale, memory.clock);
  Publics publics;
  clMe component{dated, publics};

  Value Run() {
    std::string data_source = "Sales", periods = "2010", output = "out";
    return component.RunQuery(data_source, periods, output);
  }
};

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

TEST_F(ClMeTest, GetSetNamesFindsTheSettingsFolderOnceAndMakesAMissingDatabase) {
  Value names;
  std::string table = "Periods";
  for (const char* folder : {"component", "elsewhere"}) {
    memory.registry.SetFolder(folder);
    EXPECT_EQ(component.GetSetNames(names, table), 0);
    EXPECT_EQ(names, Value(Value::Array{"2010"}));
  }
  memory.files.files.clear();
  EXPECT_EQ(component.GetSetNames(names, table), 0);
  const std::string file = "component\\CubToQel.mdb", open = "open " + file;
  EXPECT_THAT(database.calls, ElementsAre(open, open, "create " + file, open))
      << "a file that is there is opened to be read alone";
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
  database.tables.erase("Periods");
  EXPECT_TRUE(component.Qinfo().IsEmpty());
  EXPECT_THAT(memory.boxes.boxes, IsEmpty());
}

/// Fails where it is told to; says what it was called with and which help file it found.
struct FakeWindow : QueryWindow {
  FakeWindow(const std::function<void(const std::string&)>& called, const Publics& all)
      : call(called), publics(all) {}
  ~FakeWindow() override { call("unload"); }
  Value Initialize(std::string& name) override {
    call("initialize " + name + " help=" + publics.help_file);
    return "result";
  }
  void Show() override { call("show"); }
  const std::function<void(const std::string&)>& call;
  const Publics& publics;
};

TEST_F(ClMeTest, ShowQCformReportsThroughErrorAlone) {
  const std::string init = "initialize db help=", help = "component\\VarnelHeb.Chm";
  const struct {
    const char* failing;  ///< the beginning of the call that fails
    int32_t number;
    bool has_help;
    Value result;
    int32_t error;
    std::string calls;
  } cases[] = {
      {"", 0, false, "result", -7, init + ";show;unload;"},
      {"show", 13, false, Value::Array(1), 13, init + ";show;unload;"},
      {"initialize", 13, true, Value::Array(1), 13, init + help + ";unload;"},
      {"show", -2147467259, true, Value(), -7, init + help + ";show;unload;"},
      {"", 0, true, "result", -7, init + help + ";show;unload;"},
  };
  for (const auto& c : cases) {
    if (c.has_help) memory.files.files[help] = "";
    std::string calls, name = "db";
    int32_t number = -7;
    const std::function<void(const std::string&)> called = [&](const std::string& call) {
      calls += call + ";";
      if (c.number != 0 && call.starts_with(c.failing)) throw Failure(c.number, "refused");
    };
    clMe windowed(dated, publics, [&](const Host&, Publics& all) {
      return std::make_unique<FakeWindow>(called, all);
    });
    EXPECT_EQ(windowed.ShowQCform(number, name), c.result) << c.calls;
    EXPECT_EQ(number, c.error) << c.calls;
    EXPECT_EQ(calls, c.calls);
  }
  EXPECT_THAT(memory.boxes.boxes, IsEmpty());
}

}  // namespace
}  // namespace vok::test
