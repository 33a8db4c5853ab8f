// The main query window and those that it opens, driven by the names of their controls alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <charconv>
#include <filesystem>
#include <fstream>

#include "settings/edited_sets.h"
#include "settings/writer.h"
#include "tests/support/ui/real_desk.h"
#include "texts/string_table.h"
#include "texts/text_numbers.h"
#include "ui/model/frm_cube.h"
#include "ui/model/frm_option.h"

namespace vok {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kProduct[] = "VokCubeQ17";

MessageBox Box(const std::string& text, MessageIcon icon = MessageIcon::kExclamation,
               MessageButtons buttons = MessageButtons::kOk) {
  return {text, kProduct, icon, buttons, "", 0};
}

/// All that a question says, part by part.
std::string SaidBy(const Form& question) {
  std::string said = question.Caption;
  for (const Control& control : question.Controls()) {
    if (control.Type != ControlType::kFrame) said += "|" + WithoutAccessMark(control.Caption);
  }
  return said;
}

MessageBox Critical(const std::string& text) {
  return {text, test::kExecutable, MessageIcon::kCritical, MessageButtons::kOk, "", 0};
}

struct WindowsTest : testing::Test {
  /// The next question is answered with its button `answer`; with "Cancel" for `kCancelled`.
  static constexpr int kCancelled = -1;
  void Answer(int answer) {
    desk.toolkit.in_window = {[this, answer](Form& question) {
      asked.push_back(SaidBy(question));
      question.Click(answer == kCancelled ? ControlId("cmdCancel")
                                          : ControlId("cmdAnswer", answer));
    }};
  }
  std::vector<std::string> asked;

  /// What the window shows of the run of the sample, whose clock stands still.
  void ExpectResult(Form& form, const std::string& workbook, std::size_t rows) {
    EXPECT_TRUE(form.At("fraResult").Visible);
    EXPECT_EQ(form.Text("txtResult"), workbook);
    EXPECT_EQ(form.At("lblResultRows").Caption, std::to_string(rows) + " rows in 0.0 s");
    const Control& list = form.At("lvwRows");
    std::string headers;
    for (const ControlItem& item : list.Items) headers += item.Text + (item.IsNumber ? "# " : " ");
    EXPECT_EQ(headers, "A B C D J K Q1>Spring# M1>Spring# Q2>Year# M2>Year# ");
    EXPECT_EQ(list.Rows.size(), rows);
    for (const auto& row : list.Rows) EXPECT_EQ(row.size(), list.Items.size());
    std::string bars;
    for (const Bar& bar : form.At("chtMoney").Bars)
      bars += bar.caption + " " + bar.value_text + ";";
    EXPECT_EQ(bars, "Spring 0.00;Year 155.75;");
    EXPECT_THAT(list.Rows.front(), ElementsAre("0", "110", "Returns", "Retouren", "החזרות",
                                               "Возвраты", "1", "", "3", "98.33"));
    form.Click("cmdOpenWorkbook");
    form.Click("cmdOpenFolder");
    EXPECT_THAT(desk.toolkit.opened, ElementsAre(workbook, desk.folder.path()));
  }

  test::RealDesk desk;
};

TEST_F(WindowsTest, ASettingIsMadeSavedLoadedAndRun) {
  const auto first = desk.Open();
  Form& form = first->form();
  EXPECT_FALSE(form.At("cmdHelp").Enabled);  // no help file lies beside the component
  EXPECT_EQ(form.Caption, "Query Cube to QEL [v16.8.28]");
  desk.FillIn(form);
  EXPECT_THAT(form.At("CmbObs").List, ElementsAre("Ledger1", "Ledger2"));
  EXPECT_EQ(form.Text("CmbObs"), "Ledger1");
  EXPECT_EQ(form.Text({"TextMeasure", 12}), "Amount");
  form.Click("ComSaveSet");
  EXPECT_THAT(desk.TakeBoxes(), IsEmpty());

  const auto again = desk.Open();
  Form& second = again->form();
  EXPECT_THAT(second.At("comboDataSource").List, ElementsAre("Sales"));
  second.Choose("comboDataSource", 0);
  second.Choose("ComboPeriods", 0);
  for (const Control& control : form.Controls()) {
    if (control.Name.starts_with("chk")) continue;  // these two are not stored
    EXPECT_EQ(second.At(control.Id()).Text, control.Text) << control.Name;
    EXPECT_EQ(second.At(control.Id()).Value, control.Value) << control.Name;
  }
  EXPECT_EQ(second.Text({"txtDate1", 0}), "01/01/2009");
  EXPECT_EQ(second.Text({"txtDate2", 0}), "31/03/2009");
  EXPECT_EQ(second.Text({"txtDate1", 1}), "01/01/2010") << "with its opening balance";
  EXPECT_EQ(second.Text({"txtDate1", 2}), "");
  const auto stored = ReadEditedDataSource(desk.host, desk.publics.environment, "sales");
  EXPECT_EQ(stored->CountMoney, 2);
  EXPECT_EQ(stored->MoneySets[1].MoneySet, Value("NIS"));
  EXPECT_TRUE(stored->MoneySets[2].MoneySet.IsNull());
  EXPECT_EQ(stored->MoneySets[7].Qty, "Units");
  EXPECT_TRUE(stored->MoneySets[12].IsCalculated);

  second.SetText("txtOutput", desk.folder.File("out"));
  second.Click("cmdQuery");
  const std::string workbook = desk.folder.File("out.xlsX");
  EXPECT_THAT(desk.TakeBoxes(), IsEmpty());
  EXPECT_TRUE(desk.files.Exists(workbook));
  const std::size_t rows = desk.publics.last_run.rows;
  EXPECT_GT(rows, 5U);
  ExpectResult(second, workbook, rows);
  std::string source = "Sales", periods = "Half 1", output = desk.folder.File("other");
  clMe(desk.host, desk.publics).RunQuery(source, periods, output);
  EXPECT_EQ(desk.publics.last_run.rows, rows);
}

TEST_F(WindowsTest, EveryControlHasItsTextInTheStringTable) {
  const auto window = desk.Open();
  const auto is_number = [](const std::string& text) {
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number >= text_number::kMainWindow;
  };
  const auto check = [&](Form& form) {
    EXPECT_NE(form.Caption, "") << form.Name;
    for (const Control& control : form.Controls()) {
      if (control.Name == "lblNumber") continue;  // of a row
      EXPECT_FALSE(is_number(control.Caption) || is_number(control.ToolTipText)) << control.Name;
      const bool captioned = control.Type == ControlType::kCommandButton ||
                             control.Type == ControlType::kLabel ||
                             control.Type == ControlType::kMenu;
      EXPECT_EQ(captioned && control.Caption.empty(), false) << control.Name;
    }
  };
  check(window->form());
  for (const char* button : {"cmdCube", "cmdOptions", "cmdAutoFill"}) {
    desk.toolkit.in_window = {check};
    window->form().Click(button);
  }
  EXPECT_THAT(desk.toolkit.shown, ElementsAre("frmCube", "FrmOption", "frmLiniarDates"));
}

TEST_F(WindowsTest, WhatCannotBeDoneIsToldAndChangesNothing) {
  const auto window = desk.Open();
  Form& form = window->form();
  const MessageBox nothing = Box("Choose a data source and name the workbook.");
  const MessageBox no_source = Box("No Data Source selected!\r\n Save of datasource Canceled!");
  struct {
    const char* what;
    std::function<void()> act;
    std::vector<MessageBox> boxes;
  } const cases[] = {
      {"run without a data source", [&] { form.Click("mnuRun"); }, {nothing}},
      {"save without one",
       [&] {
         form.Click("mnuSave");
         form.SetText("txtCubeName", "x");
         for (const char* field : {"txtVarnelMDB", "TxtFileName", "txtCubeName", "CmbObs"}) {
           EXPECT_EQ(form.At(field).Error, form.Text(field).empty()) << field;
         }
         EXPECT_EQ(form.Focus->name, "txtVarnelMDB");
         form.SetText("txtCubeName", "");
       },
       {no_source}},
      {"delete nothing", [&] { form.Click("cmdDeletePeriods"); }, {}},
      {"load an unknown set",
       [&] {
         window->LoadPeriodSet("unknown");
         form.SetText("comboDataSource", "unknown");
         form.Raise(FormEvent::kClicked, "comboDataSource");
       },
       {}},
      {"close with changes, the question left",
       [&] {
         form.Visible = true;
         Answer(kCancelled);
         form.Click("mnuClose");
         EXPECT_TRUE(form.Visible);
       },
       {}},
      {"close without saving",
       [&] {
         Answer(1);
         form.Click("cmdClose");
         EXPECT_FALSE(form.Visible);
       },
       {}},
  };
  for (const auto& [what, act, boxes] : cases) {
    act();
    EXPECT_EQ(desk.TakeBoxes(), boxes) << what;
  }
  EXPECT_TRUE(ReadEditedPeriods(desk.host, desk.publics.environment, "periods"))
      << "the period set is saved before the data source is refused";
  EXPECT_THAT(asked, testing::Each("Save the changes?|Changes that are not saved:|unknown|Save|"
                                   "Discard|Cancel"));
  EXPECT_EQ(asked.size(), 2U);
}

TEST_F(WindowsTest, AQueryThatRunsCanBeStoppedAndNothingElseBeDone) {
  const auto window = desk.Open();
  Form& form = window->form();
  desk.FillIn(form);
  form.Click("ComSaveSet");
  form.SetText("txtOutput", desk.folder.File("out"));
  form.Visible = true;
  const auto state = [&form] {
    std::string states;
    for (const Control& control : form.Controls()) {
      if (control.Name.starts_with("cmdOpen")) continue;  // by what the run left
      states += control.Name + (control.Enabled ? "+" : "-") + (control.Cancel ? "C " : " ");
    }
    return states;
  };
  const std::string before = state();
  WriteWholeFile(desk.disk, desk.folder.File("out.xlsX"), "old");
  const auto close = [&form] {  // as a view does at Escape, and when its window is closed
    for (const Control& control : form.Controls()) {
      if (control.Cancel) return form.Click(control.Id());
    }
  };
  struct {
    const char* what;
    std::function<void()> act;
    const char* said;
    std::size_t boxes = 0;
  } const cases[] = {
      {"stopped", [&] { form.Click("cmdStop"); }, "stopped before its end"},
      {"closed, twice", [&] { close(), close(); }, "stopped before its end"},
      {"the thread fails", [] { throw Failure(7, "Out of memory"); }, "", 1},
      {"other commands", [&] { form.Click("cmdQuery"), form.Click("mnuClose"); }, "0.0 s"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    desk.toolkit.in_run = [&] {
      EXPECT_TRUE(form.At("fraProgress").Visible);
      EXPECT_EQ(form.Focus->name, "cmdStop");
      c.act();
    };
    form.Click("mnuRun");
    EXPECT_EQ(state(), before);
    EXPECT_EQ(desk.TakeBoxes().size(), c.boxes);
    EXPECT_THAT(form.At("lblResultRows").Caption, HasSubstr(c.said));
    const bool whole = std::string(c.said) == "0.0 s";
    EXPECT_EQ(ReadWholeFile(desk.disk, desk.folder.File("out.xlsX")) != "old", whole);
    EXPECT_EQ(form.At("cmdOpenFolder").Enabled, whole);
    EXPECT_FALSE(form.At("fraProgress").Visible);
  }
  desk.files.Delete(desk.folder.File("out.xlsX"));
  form.Click("cmdOpenWorkbook");
  EXPECT_THAT(desk.TakeBoxes(), ElementsAre(Box("The workbook is not there any more; run the query "
                                                "again: " +
                                                desk.folder.File("out.xlsX"))));
}

TEST_F(WindowsTest, ADataSourceWithoutANameIsNamedByTheTime) {
  struct {
    const char* locale;
    const char* name;
  } const cases[] = {{"en_GB", "Save  15/11 16:32"},
                     {"de_DE", "Save  15.11 16:32"},
                     {"sv_SE", "Save  15-11 16:32"},
                     {"he_IL", "Save  15.11 16:32"}};
  desk.memory.clock.now = Date{Date::FromCivil(2024, 11, 15).serial + (16 * 60 + 32) / 1440.0};
  for (const auto& [locale_name, name] : cases) {
    IcuLocale locale(locale_name);
    Host host{desk.host.component, desk.files,        desk.memory.registry, locale,
              desk.memory.clock,   desk.memory.boxes, desk.database,        desk.cube,
              desk.spreadsheet};
    FrmPeriods window(host, desk.publics, desk.toolkit);
    std::string database = "host.mdb";
    EXPECT_EQ(window.Initialize(database), Value(true));
    for (const char* field : {"TxtFileName", "txtCubeName", "CmbObs"}) {
      window.form().SetText(field, "x");
    }
    EXPECT_TRUE(window.SaveSettings());
    EXPECT_EQ(window.form().Text("comboDataSource"), name);
    EXPECT_TRUE(ReadEditedDataSource(host, desk.publics.environment, name)) << name;
  }
}

TEST_F(WindowsTest, MeasuresThatTheCubeLacksAreMarkedAndTold) {
  const auto window = desk.Open();
  desk.FillIn(window->form());
  window->form().Click("ComSaveSet");
  auto setting = *ReadEditedDataSource(desk.host, desk.publics.environment, "Sales");
  setting.MoneySets[2].Measure = setting.MoneySets[5].Measure = "Profit";
  setting.MoneySets[4].Measure = "AMOUNT";
  setting.MoneySets[6].Measure = "Loss";
  SaveMoneyMeasures(desk.host, desk.publics.environment, setting);
  window->form().Raise(FormEvent::kClicked, "comboDataSource");
  EXPECT_THAT(desk.TakeBoxes(), ElementsAre(Critical("MEASURES \r\n\r\nProfit\r\nLoss")));
  std::string marked;
  for (int row = 0; row < kMoneySetCount; ++row) {
    const bool error = window->form().At({"TextMeasure", row}).Error;
    EXPECT_EQ(window->form().At({"ComMeasure", row}).Caption, error ? "Error" : "Measure");
    if (error) marked += std::to_string(row) + " ";
  }
  EXPECT_EQ(marked, "2 5 6 ");
}

TEST_F(WindowsTest, ASettingWhoseCubeFileIsGoneIsShownAndSaysSo) {
  const auto window = desk.Open();
  Form& form = window->form();
  desk.FillIn(form);
  form.Click("ComSaveSet");
  desk.files.Delete(desk.Cube());
  const auto gone = [](const char* procedure, const char* module) {
    return Field(&MessageBox::text,
                 AllOf(HasSubstr("sample.cub"), HasSubstr(std::string("Function : ") + procedure +
                                                          "\r\nModule : " + module + "\r\n")));
  };
  form.Raise(FormEvent::kClicked, "comboDataSource");
  EXPECT_THAT(desk.TakeBoxes(),
              ElementsAre(gone("UpdObsList", "FrmPeriosd"), Critical("MEASURES \r\n\r\nAmount")));
  EXPECT_EQ(form.Text("CmbObs"), "Ledger1");
  desk.toolkit.in_window = {[](Form& option) { option.Click("cmdOk"); }};
  form.Click("cmdOptions");
  EXPECT_THAT(desk.TakeBoxes(), ElementsAre(gone("SetCmbMeas2", "FrmPeriods")));
  EXPECT_EQ(form.Text({"TextMeasure", 12}), "Amount");
}

TEST_F(WindowsTest, TheCountOfMoneySetsStaysUntilAnotherIsTyped) {
  struct {
    int16_t stored;
    std::vector<const char*> typed;
    int16_t count;
    bool refused = false;
  } const cases[] = {{20, {}, 20},         {-1, {}, -1},          {20, {"13"}, 13},
                     {3, {"14"}, 0, true}, {3, {"two"}, 0, true}, {3, {"", "-1", "4"}, 4},
                     {3, {""}, 0}};
  for (const auto& [stored, typed, count, refused] : cases) {
    const WindowServices services{desk.host, desk.publics, desk.toolkit};
    FrmOption window(services, {});
    desk.toolkit.in_window = {[&texts = typed, marked = refused](Form& form) {
      for (const char* text : texts) form.SetText("txtCountMoney", text);
      EXPECT_EQ(form.At("txtCountMoney").Error, marked);
      form.Click("cmdOk");
    }};
    DataSourceSetting setting;
    setting.CountMoney = stored;
    EXPECT_TRUE(window.ShowForm(setting));
    EXPECT_EQ(setting.CountMoney, count) << stored;
  }
}

TEST_F(WindowsTest, ASetIsDeletedOnlyWhenThePersonSaysSo) {
  const auto window = desk.Open();
  desk.FillIn(window->form());
  window->form().Click("ComSaveSet");
  struct {
    const char* button;
    const char* combo;
    const char* name;
  } const cases[] = {{"cmdDeletePeriods", "ComboPeriods", "Half 1"},
                     {"cmdDeleteSource", "comboDataSource", "Sales"}};
  for (const auto& [button, combo, name] : cases) {
    for (const MessageAnswer answer : {MessageAnswer::kNo, MessageAnswer::kYes}) {
      desk.memory.boxes.answer = answer;
      window->form().Click(button);
      EXPECT_THAT(desk.TakeBoxes(),
                  ElementsAre(Box(std::string("Are you shure you want to delete ") + name,
                                  MessageIcon::kQuestion, MessageButtons::kYesNo)));
      const bool kept = answer == MessageAnswer::kNo;
      EXPECT_EQ(window->form().At(combo).List.size(), kept ? 1U : 0U);
      EXPECT_EQ(window->form().Text(combo), kept ? name : "");
    }
  }
}

TEST_F(WindowsTest, UnsavedEntriesAreAskedAboutBeforeAnotherSetReplacesThem) {
  const auto window = desk.Open();
  Form& form = window->form();
  desk.FillIn(form);
  form.Click("ComSaveSet");
  form.SetText("ComboPeriods", "Other");
  form.SetText({"TextPeriod", 0}, "Autumn");
  form.Click("ComSaveSet");
  form.SetText("ComboPeriods", "half 1");
  form.Leave("ComboPeriods");
  EXPECT_EQ(form.Text({"TextPeriod", 0}), "Spring")
      << "a typed name loads while nothing is unsaved";
  desk.TakeBoxes();
  struct {
    int answer;
    const char* name;
    const char* period;
    const char* stored;
  } const cases[] = {{kCancelled, "half 1", "Edited", "Spring"},
                     {1, "Other", "Autumn", "Spring"},
                     {0, "Other", "Autumn", "Edited"}};
  for (const auto& [answer, name, period, stored] : cases) {
    form.SetText({"TextPeriod", 0}, "Edited");
    form.SetText("ComboPeriods", "Other");
    form.Leave("ComboPeriods");
    EXPECT_EQ(form.Text({"TextPeriod", 0}), "Edited") << "a typed name never replaces entries";
    form.SetText("ComboPeriods", "half 1");
    Answer(answer);
    form.Choose("ComboPeriods", form.At("ComboPeriods").List[0] == "Other" ? 0 : 1);
    EXPECT_EQ(asked.back(),
              "Save the changes?|Changes that are not saved:|half 1|Save|Discard|Cancel");
    EXPECT_EQ(form.Text("ComboPeriods"), name);
    EXPECT_EQ(form.Text({"TextPeriod", 0}), period);
    EXPECT_EQ(
        ReadEditedPeriods(desk.host, desk.publics.environment, "Half 1")->Period(1).PeriodName,
        stored);
    Answer(1);
    form.SetText("ComboPeriods", "half 1");
    form.Raise(FormEvent::kClicked, "ComboPeriods");
    EXPECT_THAT(desk.TakeBoxes(), IsEmpty());
  }
}

TEST_F(WindowsTest, ChangedSetsShowInTheTitleAndARunSaysWhichOfThemItReads) {
  const auto window = desk.Open();
  Form& form = window->form();
  const std::string title = form.Caption;
  const auto changed = [&] { return form.Caption.substr(title.size()); };
  EXPECT_EQ(title, "Query Cube to QEL [v16.8.28]");
  form.Type({"TextPeriod", 0}, "S");
  EXPECT_EQ(changed(), " - *Periods") << "while it is typed";
  form.Type({"TextPeriod", 0}, "");
  EXPECT_EQ(changed(), "") << "and taken back";
  form.Type("txtActFile", "acts");
  EXPECT_EQ(changed(), " - *Data source");
  desk.FillIn(form);
  EXPECT_EQ(changed(), " - *Sales, *Half 1");
  form.Click("ComSaveSet");
  EXPECT_EQ(changed(), "");
  form.Type({"TextPeriod", 0}, "R&D");
  form.SetText("txtOutput", desk.folder.File("out"));
  struct {
    int answer;
    const char* ran;     ///< name of period 1 in the run; "": there was none
    const char* stored;  ///< and in the database
    const char* changed;
  } const cases[] = {{kCancelled, "", "Spring", " - *Half 1"},
                     {1, "Spring", "Spring", " - *Half 1"},
                     {0, "R&D", "R&D", ""}};
  for (const auto& c : cases) {
    desk.publics.settings = {};
    desk.publics.last_run = {};
    Answer(c.answer);
    desk.toolkit.in_run = [&] { EXPECT_EQ(changed(), c.changed) << "as the run is shown"; };
    form.Click("mnuRun");
    EXPECT_EQ(asked.back(),
              "Save the changes?|Changes that are not saved:|Half 1|Save and run|"
              "Run as saved|Cancel");
    EXPECT_EQ(desk.publics.settings.periods.Period(1).PeriodName, c.ran);
    EXPECT_EQ(desk.publics.last_run.workbook.empty(), std::string(c.ran).empty());
    EXPECT_EQ(form.Text({"TextPeriod", 0}), "R&D");
    EXPECT_EQ(changed(), c.changed);
    EXPECT_EQ(
        ReadEditedPeriods(desk.host, desk.publics.environment, "Half 1")->Period(1).PeriodName,
        c.stored);
  }
  EXPECT_EQ(asked.size(), 3U);
  form.SetText("ComboPeriods", "");
  form.Click("ComSaveSet");
  desk.TakeBoxes();
  EXPECT_EQ(changed(), "");
  // Looking at the wizard changes nothing, though the rows then show their zero dates.
  desk.toolkit.in_window = {[](Form& wizard) { wizard.Click("cmdCancel"); }};
  form.Click("cmdAutoFill");
  EXPECT_EQ(form.Text({"txtDate1", 11}), "30/12/1899");
  EXPECT_EQ(changed(), "");
  form.Click("cmdClose");
  EXPECT_EQ(asked.size(), 3U);
}

TEST_F(WindowsTest, TheHostProgramOpensTheWindowOnItsDatabase) {
  desk.files.Append(desk.host.component.folder + "\\VarnelHeb.Chm", "");
  clMe me(desk.host, desk.publics, [&](const Host& host, Publics& publics) {
    return std::make_unique<FrmPeriods>(host, publics, desk.toolkit);
  });
  desk.toolkit.in_window = {[](Form& form) {
    EXPECT_EQ(form.Text("txtVarnelMDB"), "C:\\host.mdb");
    form.Click("mnuContents");
    form.Click("cmdClose");
    EXPECT_FALSE(form.Visible);
  }};
  int32_t error = 7;
  std::string database = "C:\\host.mdb";
  EXPECT_EQ(me.ShowQCform(error, database), Value(true));
  EXPECT_EQ(error, 7);
  EXPECT_THAT(desk.toolkit.shown, ElementsAre("FrmPeriods"));
  EXPECT_THAT(desk.toolkit.help, ElementsAre(HasSubstr("VarnelHeb.Chm")));
  EXPECT_THAT(desk.TakeBoxes(), IsEmpty());
}

TEST_F(WindowsTest, FilesArePickedFromTheSettingsFolder) {
  const auto window = desk.Open();
  Form& form = window->form();
  desk.toolkit.picked = "picked";
  const auto open_cube = [&] {
    desk.toolkit.in_window = {[&](Form& selection) {
      std::filesystem::current_path("/");
      selection.Click("ComCubeFile");
    }};
    form.Click("cmdCube");
    desk.TakeBoxes();
  };
  struct {
    const char* title;
    const char* filter;
    int32_t flags;
    std::function<void()> act;
  } const cases[] = {
      {" - Open a file", "*.*|*.*", 4100, [&] { form.Click("cmdVarnelMDB"); }},
      {" - Open a file", "*.*|*.*", 4100, [&] { form.Click("cmdActFile"); }},
      {" - Open a file", "Cub files(*.cub)|*.cub", 4100, open_cube},
      {" - Save a file", "Excel files(*.xlsX)|*.xlsX", 2052, [&] { form.Click("cmdOutput"); }},
  };
  for (const auto& c : cases) {
    std::filesystem::current_path("/");
    c.act();
    const FileDialog& dialog = desk.toolkit.dialogs.back();
    EXPECT_EQ(dialog.title, test::kExecutable + std::string(c.title));
    EXPECT_EQ(dialog.filter, c.filter);
    EXPECT_EQ(dialog.flags, c.flags);
    EXPECT_EQ(desk.toolkit.folders.back(), desk.settings) << c.filter;
  }
  EXPECT_EQ(desk.toolkit.dialogs.size(), std::size(cases));
  for (const char* field : {"txtVarnelMDB", "txtActFile", "txtOutput"}) {
    EXPECT_EQ(form.Text(field), "picked");
  }
  std::filesystem::current_path("/");
}

TEST_F(WindowsTest, ACubeIsChosenFromAFileThatHasOne) {
  desk.Open();
  std::ofstream(desk.folder.File("bad.cub")) << "no cube";
  const WindowServices services{desk.host, desk.publics, desk.toolkit};
  frmCube window(services);
  desk.toolkit.in_window = {[&](Form& form) {
    EXPECT_FALSE(form.At("ComboCube").Enabled);
    desk.toolkit.picked = desk.Cube();
    form.Click("ComCubeFile");
    EXPECT_EQ(form.Text("ComboCube"), "QEL");
    form.Click("ComCubeFile");
    desk.toolkit.picked = "";
    form.Click("ComCubeFile");
    EXPECT_EQ(form.Text("TxtFileName"), desk.Cube());
    desk.toolkit.picked = desk.folder.File("bad.cub");
    form.Click("ComCubeFile");
    EXPECT_THAT(form.At("ComboCube").List, IsEmpty());
    EXPECT_FALSE(form.At("ComboCube").Enabled);
    form.Click("cmdOk");
  }};
  EXPECT_FALSE(window.ShowForm()) << "no cube is chosen in a file that has none";
  const auto boxes = desk.TakeBoxes();
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_THAT(boxes[0].text, HasSubstr("Function : ComCubeFile_Click\r\nModule : frmCube"));
  ASSERT_EQ(desk.toolkit.dialogs.size(), 4U);
  window.UpdListCube(nullptr);
  EXPECT_THAT(desk.TakeBoxes(), ElementsAre(Box("QeL cube not found...")));
}

}  // namespace
}  // namespace vok
