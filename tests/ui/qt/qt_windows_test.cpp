// The drawn windows, as a person works with them: real keys and mouse, on the real system.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtWidgets/QApplication>
#include <cstdlib>
#include <filesystem>

#include "providers/recordset/persisted_recordset.h"
#include "tests/support/jet_shape.h"
#include "tests/support/ui/real_desk.h"
#include "tests/ui/qt/ui_driver.h"
#include "ui/qt/qt_desktop.h"

namespace vok {
namespace {

/// A desk whose windows are drawn, with the texts of a language and the dates of a country.
struct QtDesk : test::RealDesk {
  /// `language` is 0, 1 or 2: English, Hebrew (drawn from right to left), Russian.
  explicit QtDesk(const std::string& country = "en_GB", int language = 0) : customs(country) {
    publics.language.RightToLeftMarker = language == 1 ? 1 : 0;
    memory.registry.ini[settings + "\\Qel.ini|Qel|QelUILanguage"] = std::to_string(language);
    std::filesystem::copy_file(LANGUAGE_TABLE, folder.File("Lang.rs"));
  }

  struct Desktop : qt::QtDesktop {
    std::string PickFile(const FileDialog& dialog) override {
      return picked.empty() ? QtDesktop::PickFile(dialog) : picked;
    }
    std::string picked;  ///< "": asks the person
  };
  struct Database : test::ImpatientDatabase {
    Database(Files& all, const Locale& locale)
        : ImpatientDatabase(all, locale, [this](const std::string& path) { return jet(path); }),
          files(all),
          customs(locale) {}
    std::unique_ptr<Recordset> OpenRecordset(const std::string& path) override {
      return recordset::OpenPersisted(files, customs, path);
    }
    Files& files;
    const Locale& customs;
    OpenJetFile jet;
  };

  std::unique_ptr<FrmPeriods> OpenDrawn() {
    auto window = std::make_unique<FrmPeriods>(shown, publics, desktop);
    std::string host_database;
    window->Initialize(host_database);
    return window;
  }

  IcuLocale customs;
  Desktop desktop;
  Database tables{files, customs};
  Host shown{host.component, files, memory.registry, customs, memory.clock, desktop,
             tables,         cube,  spreadsheet};
};

constexpr char kNoBox[] = "Query Cube to QEL [v16.8.28] - *Periods";
constexpr char kDiscard[] = R"(
    close
    front Save the changes?
    press Alt+D)";

std::string Replaced(std::string script, const std::string& what, const std::string& by) {
  for (auto at = script.find(what); at != script.npos; at = script.find(what, at + by.size())) {
    script.replace(at, what.size(), by);
  }
  return script;
}

TEST(QtWindows, ASettingIsMadeSavedLoadedAndRun) {
  for (const int language : {0, 1, 2}) {
    QtDesk desk("en_GB", language);
    desk.desktop.picked = desk.Cube();
    const auto window = desk.OpenDrawn();
    std::string script = Replaced(R"(
        focus comboDataSource
        type Sales
        click txtVarnelMDB
        type host.mdb
        click cmdCube
        click ComCubeFile
        see ComboCube QEL
        shot cube-LANGUAGE
        click cmdOk
        see txtCubeName QEL
        see CmbObs Ledger1
        click ComMeasure(0)
        focus CmbMeas(0)
        type Amount
        press Tab
        focus CmbQty(0)
        press Down
        see CmbQty(0) Amount
        press Down
        see CmbQty(0) Units
        click chkCalc(12)
        click txtCountMoney
        press Ctrl+A
        type x
        press Shift+Tab
        see txtCountMoney
        press Tab
        type 2
        shot options-LANGUAGE
        press Return
        see TextMeasure(0) Amount
        click ComboPeriods
        type 2009
        click TextPeriod(0)
        type January
        press Tab
        focus txtDate1(0)
        click cmdAutoFill
        focus lstInterval
        press Down
        press Up
        press Tab
        type 15/1/2009
        press Tab
        press Tab
        type 1
        press Tab
        type 12
        shot wizard-LANGUAGE
        press Return
        see txtDate1(0) 01/01/2009
        see txtDate2(11) 31/12/2009
        click CheckItraPticha(1)
        see CheckItraPticha(1) 2
        click txtOutput
        type OUT
        press Ctrl+S
        shot main-LANGUAGE
        click comboDataSource
        press Tab
        focus txtVarnelMDB
        click cmdDeletePeriods
        front Are you shure you want to delete 2009
        press Return
        see ComboPeriods 2009
        click TextPeriod(0)
        press Ctrl+A
        type Jan 2024
        press Tab
        shot marked-LANGUAGE
        click cmdNamePeriods
        front Rename these periods, too?
        shot rename-LANGUAGE
        press Return
        see TextPeriod(0) 2009-01
        see TextPeriod(11) 2009-12
        shot named-LANGUAGE
        press F5
        front Save the changes?
        focus cmdAnswer(0)
        shot run-LANGUAGE
        click cmdAnswer(1)
        await fraResult
        see txtResult OUT.xlsX
        focus cmdOpenWorkbook
        shot result-LANGUAGE
        click cmdCleanDates
        click TextPeriod(0)
        press Ctrl+A
        type Jan 2024
        click cmdAutoFill
        press Esc
        shot zero-LANGUAGE
        close
        front Save the changes?
        shot close-LANGUAGE
        click cmdAnswer(1))",
                                  "OUT", desk.folder.File("out"));
    script = Replaced(script, "LANGUAGE", std::to_string(language));
    const test::UiDriver person(script);
    window->Show();
    EXPECT_TRUE(desk.files.Exists(desk.folder.File("out.xlsX")));
  }
}

TEST(QtWindows, DatesAreTakenAsTypedAndRefusedInTheirField) {
  struct {
    const char* country;
    const char* field;
    const char* typed;
    const char* leave;
    const char* shown;
    const char* focus;
    const char* box = kNoBox;
  } const cases[] = {
      {"en_GB", "txtDate1(0)", "15/3/2024", "press Tab", "15/03/2024", "txtDate2(0)"},
      {"en_US", "txtDate1(1)", "3/15/2024", "press Tab", "3/15/2024", "txtDate2(1)"},
      {"de_DE", "txtDate2(0)", "15.3.24", "click txtOutput", "15.03.2024", "txtOutput"},
      {"he_IL", "txtDate1(0)", "15 במרץ 2024", "press Shift+Tab", "15.3.2024", "TextPeriod(0)"},
      {"en_GB", "txtDate1(0)", "abc", "press Tab", "00:00:00", "txtDate1(0)"},
      // refused, and so the command that left the field is not carried out
      {"en_GB", "txtDate1(0)", "abc", "click cmdQuery", "00:00:00", "txtDate1(0)"},
      {"en_GB", "txtDate1(0)", "abc", "press Return", "00:00:00", "txtDate1(0)"},
      {"en_GB", "txtDate1(0)", "abc", "press F5", "00:00:00", "txtDate1(0)"},
      {"en_GB", "txtDate2(0)", "30/2/2024", "press Alt+R", "", "txtDate2(0)"},
      {"en_GB", "txtDate2(3)", "14/3/2024", "press Tab", "", "txtDate2(3)",
       "Invalid date entered at period"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.typed) + " " + c.leave);
    QtDesk desk(c.country);
    const auto window = desk.OpenDrawn();
    window->form().SetText({"txtDate1", 3}, "15/03/2024");
    const std::string in_box =
        c.box == kNoBox ? "" : "\npress Return\nfront " + std::string(kNoBox);
    const test::UiDriver person(std::string("click ") + c.field + "\ntype " + c.typed + "\n" +
                                c.leave + "\nfront " + c.box + in_box + "\nsee " + c.field + " " +
                                c.shown + "\nfocus " + c.focus + kDiscard);
    window->Show();
  }
}

TEST(QtWindows, ARowWithItsOpeningBalanceTakesADateKeyByKey) {
  constexpr char kBox[] = "press Return\nfront Query Cube to QEL [v16.8.28]\nclose";
  struct {
    const char* country;
    const char* typed;
    const char* leave;
    const char* end = kDiscard;
  } const cases[] = {{"en_GB", "15/03/2024", "press Tab"},
                     {"en_US", "3/15/2024", "press Tab"},
                     {"sv_SE", "2024-03-15", "press Shift+Tab"},
                     {"en_GB", "15/03/2024", "press Alt+M"},
                     {"en_GB", "15/03/2024", "click chkFromD"},
                     {"en_GB", "15/03/2024", "click Comupd(0)"},
                     {"en_GB", "15/03/2024", "click cmdNamePeriods"},
                     {"en_GB", "15/03/2024", "close", "front Save the changes?\npress Alt+D"},
                     {"en_GB", "15/03/2024", "press F5", "press Return\nclose\npress Alt+D"},
                     {"en_GB", "15/03/2024", "press Ctrl+S", kBox},
                     {"en_GB", "15/03/2024", "click ComSaveSet", kBox}};
  for (const auto& [country, typed, leave, end] : cases) {
    SCOPED_TRACE(std::string(country) + " " + leave);
    QtDesk desk(country);
    const auto window = desk.OpenDrawn();
    window->form().At({"Comupd", 0}).Enabled = true;
    std::string script = "click CheckItraPticha(0)\nclick txtDate1(0)\n";
    for (const char* key = typed; *key != 0; ++key) {
      script +=
          std::string("type ") + *key + "\nsee txtDate1(0) " + std::string(typed, key + 1) + "\n";
    }
    const test::UiDriver person(script + leave + "\n" + end);
    window->Show();
    EXPECT_EQ(window->form().Text({"txtDate1", 0}),
              desk.customs.ShortDate(Date::FromCivil(2024, 1, 1)));
  }
}

TEST(QtWindows, ClosingAWindowAsksFirstForWhatWouldBeLost) {
  // who gives up is not held by a wrong date
  constexpr std::pair<const char*, const char*> kCases[] = {{"abc", "close"},
                                                            {"abc", "press Esc"},
                                                            {"abc", "click cmdClose"},
                                                            {"", "press Alt+F\npress C"}};
  for (const auto& [date, how] : kCases) {
    SCOPED_TRACE(how);
    QtDesk desk;
    const auto window = desk.OpenDrawn();
    const test::UiDriver person(
        "click TextPeriod(0)\ntype x\nclick txtDate1(0)\ntype " + std::string(date) + "\n" +
        Replaced("HOW\nfront Save the changes?\npress Esc\n"
                 "see TextPeriod(0) x\nHOW\nfront Save the changes?\npress Alt+D",
                 "HOW", how));
    window->Show();
    EXPECT_FALSE(window->form().Visible);
  }
}

TEST(QtWindows, AHundredOpeningsLeaveNothing) {
  QtDesk desk;
  const auto widgets = QApplication::allWidgets().size();
  for (int i = 0; i < 100; ++i) {
    const auto window = desk.OpenDrawn();
    const test::UiDriver person("close");
    window->Show();
  }
  EXPECT_EQ(QApplication::allWidgets().size(), widgets);
}

#ifdef JET_READER
TEST(QtWindows, SetsOfAJetFileAreShownAndNeverWritten) {
  QtDesk desk;
  const std::string file = desk.settings + "/CubToQel.mdb";
  std::filesystem::copy_file(JET_SAMPLES "/CubToQel-28-columns.mdb", file);
  const std::string before = ReadWholeFile(desk.files, file);
  jet::JetFiles jet_files(desk.files, desk.customs, {JET_READER},
                          test::SettingsShape(desk.customs));
  desk.tables.jet = [&](const std::string& path) { return jet_files.Open(path); };
  const auto window = desk.OpenDrawn();
  const test::UiDriver person(R"(
      focus comboDataSource
      type Sales
      press Tab
      says "sales.cub"
      press Return
      says MEASURES
      press Return
      click ComboPeriods
      type P
      press Tab
      shot jet
      press Ctrl+S
      says Error : -2147217911
      says read here but never written. Nothing was changed.
      shot jet-refused
      press Return
      says (while saving the data source "Sales")
      press Return
      click cmdDeletePeriods
      press Alt+Y
      says vokcube settings import
      press Return
      click cmdDeleteSource
      press Alt+Y
      says vokcube settings import
      press Return
      see txtCubeName QEL
      see TextMeasure(12) Amount
      see ComboPeriods P
      see TextPeriod(4) ינו 2016
      see txtDate1(4)
      see txtDate2(11) 15/04/2010
      close)");
  window->Show();
  EXPECT_EQ(ReadWholeFile(desk.files, file), before);
}
#endif

}  // namespace
}  // namespace vok
