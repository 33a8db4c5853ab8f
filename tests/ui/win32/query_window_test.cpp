// The main window and those that it opens, on the real system.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "hosts/composition/system_host.h"
#include "settings/set_reader.h"
#include "settings/set_writer.h"
#include "settings/settings_tables.h"
#include "tests/support/cubes/sample_cube.h"
#include "tests/ui/win32/ui_driver.h"
#include "texts/string_table.h"
#include "texts/text_numbers.h"
#include "ui/model/frm_periods.h"
#include "ui/win32/windows_desktop.h"

namespace vok::windows {
namespace {

struct QueryDesk {
  explicit QueryDesk(int language) {
    BuildInto(folder, test::SampleLedger());
    std::filesystem::create_directory(settings);
    std::filesystem::copy_file(LANGUAGE_TABLE, folder.File("Lang.rs"));
    std::ofstream(settings + "/Qel.ini") << "[Qel]\nQelUILanguage=" << language << "\n";
    publics.language.RightToLeftMarker = language == 1 ? 1 : 0;
    publics.environment.SettingsFolder = settings;
    CreateDB(host, publics.environment, settings);
    SaveSets();
  }

  void SaveSets() {
    DataSourceSetting source;
    source.SetName = "Sales";
    source.VarnelMDB = "host.mdb";
    source.CubeFile = folder.File("sample.cub");
    source.CubeName = "QEL";
    source.OBS = "Ledger1";
    source.CountMoney = 2;
    source.MoneySets.fill({"NIS", "Amount", "Units", false});
    source.MoneySets[2].Measure = "Amuont";  // which the cube lacks
    SaveDataSourceInfo(host, publics.environment, source);
    SaveMoneyMeasures(host, publics.environment, source);
    PeriodSet periods;
    periods.SetName = "Half years";
    periods.Period(1) = {"First half", Date::FromCivil(2009, 1, 1), Date::FromCivil(2009, 6, 30),
                         false};
    periods.Period(3) = {"שנה", Date::FromCivil(2009, 1, 1), Date::FromCivil(2010, 12, 31), true};
    SavePeriods(host, publics.environment, periods);
  }

  test::TemporaryFolder folder;
  std::string settings = folder.File("settings");
  WindowsDesktop desktop;
  SystemHost system{settings, &desktop};
  const Host& base = system.host();
  Host host{{.folder = folder.path()},
            base.files,
            base.registry,
            base.locale,
            base.clock,
            desktop,
            base.database,
            base.cube,
            base.spreadsheet};
  Publics publics;
};

std::string Named(std::string acts, const std::string& what, const std::string& by) {
  for (auto at = acts.find(what); at != acts.npos; at = acts.find(what, at + by.size())) {
    acts.replace(at, what.size(), by);
  }
  return acts;
}

TEST(QueryWindow, IsFilledInRunAndClosedByAPerson) {
  for (const int language : {0, 1, 2}) {
    SCOPED_TRACE(language);
    QueryDesk desk(language);
    FrmPeriods window(desk.host, desk.publics, desk.desktop);
    std::string host_database;
    window.Initialize(host_database);
    std::string acts =
        "{Down}{wait EXE}{picture missing-LANG}{Enter}{wait MAIN}"
        "{click ComboPeriods}{Down}{click txtOutput}OUT{picture main-LANG}"
        "{click ComMeasure(2)}{wait OPTIONS}{picture options-LANG}Amount{Enter}{wait MAIN}"
        "{click cmdCube}{wait CUBE}{picture cube-LANG}{Esc}{wait MAIN}"
        "{click cmdAutoFill}{wait WIZARD}{Down}{Tab}1/1/2009{picture wizard-LANG}{Esc}{wait MAIN}"
        "{click TextPeriod(0)}{Ctrl+A}Jan 2024{Tab}{picture zero-LANG}"
        "{click cmdNamePeriods}{wait RENAME}{picture rename-LANG}{Enter}{wait MAIN}"
        "{Ctrl+S}{click TextPeriod(2)}{Tab}2010-03-15{F5}{wait SAVE}{picture run-LANG}{Enter}"
        "{wait MAIN}{await fraResult}{picture result-LANG}"
        "{click TextPeriod(5)}x{Alt+F4}{wait SAVE}{Tab}{Enter}";
    acts = Named(acts, "MAIN", window.form().Caption);
    acts = Named(acts, "EXE", desk.host.component.executable_name);
    acts = Named(acts, "OPTIONS", StringTableText(text_number::kOptionWindow));
    acts = Named(acts, "CUBE", StringTableText(text_number::kCubeWindow));
    acts = Named(acts, "RENAME", StringTableText(text_number::kAskRename));
    acts = Named(acts, "SAVE", StringTableText(text_number::kAskSave));
    acts = Named(acts, "WIZARD", StringTableText(text_number::kLinearDatesWindow));
    acts = Named(acts, "OUT", desk.folder.File("out"));
    acts = Named(acts, "LANG", std::to_string(language));
    const UiDriver person(window.form(), acts);
    window.Show();
    EXPECT_TRUE(std::filesystem::exists(desk.folder.File("out.xlsX")));
    EXPECT_EQ(window.form().Text({"TextMeasure", 2}), "Amount");
    EXPECT_EQ(window.form().Text({"TextPeriod", 0}), "2009 H1");
    const auto stored = ReadEditedPeriods(desk.host, desk.publics.environment, "Half years");
    EXPECT_EQ(stored->Period(3).FromDate, Date::FromCivil(2010, 1, 1))
        << "with its opening balance, typed key by key";
    EXPECT_EQ(stored->Period(6).PeriodName, "") << "what was discarded";
  }
}

}  // namespace
}  // namespace vok::windows
