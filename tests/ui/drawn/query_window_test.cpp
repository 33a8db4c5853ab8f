// The main window and those that it opens, as a person works with them on the real system.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/cubes/watched_cube.h"
#include "tests/ui/drawn/drawn_desk.h"
#include "tests/ui/drawn/person.h"

namespace vok::test {
namespace {

constexpr char kDay[] = R"(
    focus comboDataSource; type Sales
    click txtVarnelMDB; type host.mdb
    click cmdCube; await ComCubeFile; click ComCubeFile; see ComboCube QEL; shot cube-LANGUAGE
    click cmdOk; see txtCubeName QEL; see CmbObs Ledger1

    click ComMeasure(0); focus CmbMeas(0); type Amount
    press Tab; focus CmbQty(0); press Down; see CmbQty(0) Amount; press Down; see CmbQty(0) Units
    click CmbMeas(11); type Units; click chkCalc(12)
    click txtCountMoney; press Ctrl+A; type x; press Shift+Tab; see txtCountMoney
    press Tab; type 2; see txtCountMoney 2; shot options-LANGUAGE
    press Return; see TextMeasure(0) Amount

    click ComboPeriods; type 2009
    click TextPeriod(0); type January; press Tab; focus txtDate1(0)
    click cmdAutoFill; focus lstInterval; press Down; press Up; press Tab
    type 15/1/2009; press Tab; press Tab; type 1; press Tab; type 12; shot wizard-LANGUAGE
    press Return; see txtDate1(0) 01/01/2009; see txtDate2(11) 31/12/2009

    click txtDate1(3); press Ctrl+A; type abc; press F5; see txtDate1(3) 00:00:00; focus txtDate1(3)
    press Ctrl+A; type abc; press Return; see txtDate1(3) 00:00:00; focus txtDate1(3)
    press Ctrl+A; type 01/04/2009; press Tab; focus txtDate2(3)
    click CheckItraPticha(1); see CheckItraPticha(1) 1
    click txtDate1(1); press Ctrl+A; type 15/3/2009; see txtDate1(1) 15/3/2009
    press Shift+Tab; see txtDate1(1) 01/01/2009

    click txtOutput; press F5; front #1111; shot nothing-LANGUAGE; press Return
    type OUT; press Ctrl+S; press Shift+Tab; focus cmdNamePeriods; shot main-LANGUAGE
    click comboDataSource; press Tab; focus txtVarnelMDB
    click cmdDeletePeriods; front Are you shure you want to delete 2009; shot delete-LANGUAGE
    press Alt+N; see ComboPeriods 2009
    click mnuAbout; front VokCubeQ17; shot about-LANGUAGE; press Return
    click TextPeriod(0); press Ctrl+A; type Jan 2024; press Tab; focus txtDate1(0)
    shot marked-LANGUAGE
    click cmdNamePeriods; front #1115; shot rename-LANGUAGE
    press Return; see TextPeriod(0) 2009-01; see TextPeriod(11) 2009-12; shot named-LANGUAGE

    press F5; front #1108; focus cmdAnswer(0); shot run-LANGUAGE
    click cmdAnswer(1); await fraResult; see txtResult WORKBOOK; focus cmdOpenWorkbook
    shot result-LANGUAGE
    scroll lvwRows; shot scrolled-LANGUAGE
    click txtOutput; press Ctrl+A; type NOWHERE; press F5; front #1108
    click cmdAnswer(1); front none; shot box-LANGUAGE; press Return; await lblCause; shot failed-LANGUAGE

    click cmdCleanDates; see txtDate2(11)
    click TextPeriod(0); press Ctrl+A; type Jan 2024
    click cmdAutoFill; focus lstInterval; press Esc; await txtOutput; see txtDate2(11) 30/12/1899
    shot zero-LANGUAGE; click txtDate1(0); press Ctrl+A; type abc
    press Esc; front #1108; press Esc; see txtDate1(0) abc
    close; front #1108; shot close-LANGUAGE; click cmdAnswer(1))";

TEST(QueryWindow, IsFilledInSavedRunAndClosedByAPerson) {
  for (const int language : {0, 1, 2}) {
    DrawnDesk desk(language);
    const auto window = desk.OpenDrawn();
    const std::filesystem::path workbook = desk.folder.File("out.xlsX");
    std::string day = Replaced(kDay, "OUT", desk.folder.File("out"));
    day = Replaced(day, "NOWHERE", desk.folder.File("none/out"));
    day = Replaced(day, "WORKBOOK", std::filesystem::path(workbook).make_preferred().string());
    const Person person(desk.Said(Replaced(day, "LANGUAGE", std::to_string(language))));
    window->Show();
    EXPECT_TRUE(std::filesystem::exists(workbook));
    const auto source = desk.StoredSource("Sales");
    EXPECT_EQ(source->CountMoney, 2);
    EXPECT_EQ(source->MoneySets[0].Qty, "Units");
    EXPECT_TRUE(source->MoneySets[12].IsCalculated);
    const auto periods = desk.StoredPeriods("2009");
    EXPECT_EQ(periods->Period(2).FromDate, Date::FromCivil(2009, 1, 1));
    EXPECT_EQ(periods->Period(1).PeriodName, "January") << "what was discarded";
  }
}

/// From an empty settings folder; where no name of a key depends on the language.
constexpr char kKeysAlone[] = R"(
    press F5; front #1111; press Return; focus comboDataSource; lack cmdHelp; type Sales
    press Tab; focus txtVarnelMDB; type host.mdb
    press Tab; press Tab; focus txtActFile; press Tab; press Tab; focus TxtFileName; type CUBE
    press Tab; see txtCubeName QEL; see CmbObs Ledger1; focus cmdCube; press Tab; focus CmbObs
    press Tab; focus ComboPeriods; type 2009; press Tab; focus cmdOptions; press Space
    focus CmbMeas(0); type Amount; press Return; see TextMeasure(0) Amount; focus cmdOptions
    press Tab; focus cmdCopyMeasure; press Space; see TextMeasure(12) Amount
    press Tab; focus ComMeasure(0); press Tab; focus TextPeriod(0); type January
    press Tab; press Tab; press Tab; focus CheckItraPticha(0); press Space
    press Shift+Tab; press Shift+Tab; focus txtDate1(0); type 01/01/2009
    press Tab; focus txtDate2(0); type 31/01/2009
    press F5; front #1111; press Return; focus txtOutput; type OUT
    press F5; front #1108; press Return; await fraResult; focus cmdOpenWorkbook
    press Space; press Esc)";

/// Works through the window until the workbook is opened. Returns the name of its first line, a
/// movement, and the last figure, an opening balance.
std::string WorkByKeys(DrawnDesk& desk, const std::string& cube) {
  const auto window = desk.OpenDrawn();
  std::string keys = Replaced(kKeysAlone, "CUBE", cube);
  const Person person(desk.Said(Replaced(keys, "OUT", desk.folder.File("out"))));
  window->Show();
  EXPECT_EQ(std::filesystem::path(desk.desktop.opened),
            std::filesystem::path(desk.folder.File("out.xlsX")));
  const auto& rows = window->form().At("lvwRows").Rows;
  return rows.at(0).at(0) + " " + rows.back().back();
}

TEST(QueryWindow, IsWorkedWithByKeysAloneToAnOpenedWorkbook) {
  for (const int language : {0, 1}) {
    DrawnDesk desk(language);
    EXPECT_EQ(WorkByKeys(desk, desk.Cube()), language == 1 ? "החזרות -65.35" : "Returns -65.35");
  }
}

TEST(QueryWindow, ARunOnACubeWithoutDatesIsExplainedToAPerson) {
  for (const int language : {0, 1, 2}) {
    DrawnDesk desk(language);
    const auto before = desk.Open();
    desk.FillIn(before->form());
    before->form().Click("ComSaveSet");
    auto texts = SampleLedger();
    texts.schema.replace(texts.schema.find("\"Date\""), 6, "\"Days\"");
    BuildInto(desk.folder, texts);
    const auto window = desk.OpenDrawn();
    for (const char* combo : {"comboDataSource", "ComboPeriods"}) window->form().Choose(combo, 0);
    window->form().SetText("txtOutput", desk.folder.File("out"));
    const Person person(desk.Said(Replaced(R"(
        press F5; front no dimension "Date"; press Return; await lblMend(0); shot lacks-LANGUAGE
        press Esc; await lblCause; see lblResultRows #1235; press Esc)",
                                           "LANGUAGE", std::to_string(language))));
    window->Show();
  }
}

TEST(QueryWindow, RunsOnACubeServerWhoseAddressIsTyped) {
  const std::string address = "http://cubes.example:8080/xmla";
  WatchedCube server;
  DrawnDesk desk(0, &server);
  WorkByKeys(desk, address);
  EXPECT_FALSE(server.queries.empty());
  EXPECT_THAT(server.calls,
              testing::Each(testing::AnyOf("close", testing::HasSubstr("=" + address + ";"))));
  EXPECT_EQ(desk.StoredSource("Sales")->CubeFile, address);
}

TEST(QueryWindow, TwentyOpeningsLeaveNothing) {
  DrawnDesk desk;
  const auto open_and_close = [&](int times) {
    for (int i = 0; i < times; ++i) {
      const auto window = desk.OpenDrawn();
      const Person person("close");
      window->Show();
    }
  };
  open_and_close(2);
  const int before = desk.desktop.PartsLeft();
  open_and_close(20);
  EXPECT_EQ(desk.desktop.PartsLeft(), before);
}

}  // namespace
}  // namespace vok::test
