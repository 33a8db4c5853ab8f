// The main query window and those that it opens, driven by the names of their controls alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <regex>

#include "settings/set_writer.h"
#include "tests/support/ui/real_desk.h"
#include "texts/string_table.h"
#include "texts/text_numbers.h"
#include "ui/model/frm_cube.h"

namespace vok {
namespace {

using test::Box;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

MessageBox Critical(const std::string& text) {
  return {text, test::kExecutable, MessageIcon::kCritical, MessageButtons::kOk, "", 0};
}

struct WindowsTest : testing::Test {
  void SaveAll() {
    desk.FillIn(form);
    form.Click("ComSaveSet");
    form.SetText("txtOutput", desk.folder.File("out"));
    EXPECT_THAT(desk.TakeBoxes(), IsEmpty());
  }

  test::RealDesk desk;
  const WindowServices services{desk.host, desk.publics, desk.toolkit};
  std::unique_ptr<FrmPeriods> window = desk.Open();
  Form& form = window->form();
  const std::string workbook = desk.folder.File("out.xlsX");
};

TEST_F(WindowsTest, WhatIsSavedIsShownAgain) {
  SaveAll();
  EXPECT_FALSE(form.At("cmdHelp").Visible);  // no help file lies beside the component
  const auto second = desk.Open();
  second->form().Choose("comboDataSource", 0);
  second->form().Choose("ComboPeriods", 0);
  for (const Control& control : form.Controls()) {
    if (control.Name.starts_with("chk") || control.Name == "txtOutput") continue;  // not stored
    EXPECT_EQ(second->form().At(control.Id()).Text, control.Text) << control.Name;
    EXPECT_EQ(second->form().At(control.Id()).Value, control.Value) << control.Name;
  }
  const auto stored = desk.StoredSource("sales");
  EXPECT_EQ(stored->MoneySets[1].MoneySet, Value("NIS"));
  EXPECT_TRUE(stored->MoneySets[2].MoneySet.IsNull());
}

TEST_F(WindowsTest, ARunIsShownWithItsRowsAndMoney) {
  SaveAll();
  form.Click("cmdQuery");
  const Control& list = form.At("lvwRows");
  EXPECT_EQ(form.At("lblResultRows").Caption, std::to_string(list.Rows.size()) + " rows in 0.0 s");
  std::string headers;
  for (const ControlItem& item : list.Items) headers += item.Text + (item.IsNumber ? "# " : " ");
  EXPECT_EQ(headers, "Line Spring: Units# Spring: Amount# Year: Units# Year: Amount# ");
  EXPECT_THAT(list.Rows.front(), ElementsAre("Returns", "1.00", "", "3.00", "98.33"));
  const auto bars = [&] {
    std::string texts = form.At("chkChart").Caption;
    for (const Bar& bar : form.At("chtMoney").Bars) {
      texts += "; " + bar.caption + (bar.title ? ":" : " " + bar.value_text);
    }
    return texts;
  };
  EXPECT_EQ(bars(), "Money by period: Amount, NIS; Spring 0.00; Year 155.75");
  form.Click("chkChart");
  EXPECT_FALSE(form.At("chtMoney").Visible);
  form.Click("cmdCopyResult");
  EXPECT_THAT(desk.toolkit.copied,
              testing::StartsWith("Line\tSpring: Units\tSpring: Amount\tYear: Units\tYear: Amount\n"
                                  "Returns\t1.00\t"));
  form.Click("cmdOpenWorkbook");
  form.Click("cmdOpenFolder");
  EXPECT_THAT(desk.toolkit.opened, ElementsAre(workbook, desk.folder.path()));
  desk.files.Delete(workbook);
  form.Click("cmdOpenWorkbook");
  EXPECT_THAT(
      desk.TakeBoxes(),
      ElementsAre(Box("The workbook is not there any more; run the query again: " + workbook)));
  auto setting = *desk.StoredSource("Sales");
  setting.MoneySets[2].Measure = "Units";
  SaveMoneyMeasures(desk.host, desk.publics.environment, setting);
  form.Raise(FormEvent::kClicked, "comboDataSource");
  form.Click("cmdQuery");
  EXPECT_EQ(bars(), "Money by period; Amount, NIS:; Spring 0.00; Units:; Year 50.00");
}

TEST_F(WindowsTest, EveryControlHasItsTextInTheStringTable) {
  const auto is_number = [](const std::string& text) {
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number >= text_number::kMainWindow;
  };
  const auto check = [&](Form& shown) {
    EXPECT_NE(shown.Caption, "") << shown.Name;
    for (const Control& control : shown.Controls()) {
      if (control.Name == "lblNumber" || control.Name == "lblCause") continue;
      EXPECT_FALSE(is_number(control.Caption) || is_number(control.ToolTipText)) << control.Name;
      const bool captioned = control.Type == ControlType::kCommandButton ||
                             control.Type == ControlType::kLabel ||
                             control.Type == ControlType::kMenu;
      EXPECT_FALSE(captioned && control.Caption.empty()) << control.Name;
      const bool silent = control.Type == ControlType::kFrame;
      EXPECT_TRUE(silent || !SpokenName(shown, control).empty()) << control.Name;
    }
  };
  check(form);
  for (const char* button : {"cmdCube", "cmdOptions", "cmdAutoFill"}) {
    desk.toolkit.in_window = {check};
    form.Click(button);
  }
  EXPECT_THAT(desk.toolkit.shown, ElementsAre("frmCube", "FrmOption", "frmLiniarDates"));
}

TEST_F(WindowsTest, AQueryThatRunsCanBeStoppedAndNothingElseBeDone) {
  SaveAll();
  form.Visible = true;
  const auto state = [&] {
    std::string states;
    for (const Control& control : form.Controls()) {
      if (control.Name == "cmdCopyResult") continue;  // by what the run left
      states += control.Name + (control.Enabled ? "+" : "-") + (control.Cancel ? "C " : " ");
    }
    return states;
  };
  const std::string before = state();
  WriteWholeFile(desk.disk, workbook, "old");
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"stopped before its end", [&] { form.Click("cmdStop"), form.Click("cmdStop"); }},
      {"", [] { throw Failure(7, "Out of memory"); }},  // the thread fails
      {"0.0 s", [&] { form.Click("cmdQuery"), form.Click("mnuClose"); }},
  };
  for (const auto& [said, act] : cases) {
    SCOPED_TRACE(said);
    desk.toolkit.in_run = [&, &act = act] {
      EXPECT_TRUE(form.At("fraProgress").Visible);
      EXPECT_EQ(form.Focus->name, "cmdStop");
      EXPECT_TRUE(form.At("cmdStop").Cancel) << "what Escape and the window's own button click";
      act();
    };
    form.Click("mnuRun");
    EXPECT_EQ(state(), before);
    EXPECT_EQ(desk.TakeBoxes().empty(), *said != '\0');
    EXPECT_THAT(form.At("lblResultRows").Caption, HasSubstr(said));
    const bool whole = std::string(said) == "0.0 s";
    EXPECT_EQ(ReadWholeFile(desk.disk, workbook) != "old", whole);
    EXPECT_EQ(form.At("cmdOpenFolder").Visible, whole);
    EXPECT_FALSE(form.At("fraProgress").Visible);
  }
}

TEST_F(WindowsTest, OpensOnTheHostProgramsDatabaseWithItsHelp) {
  desk.publics.help_file = "VarnelHeb.Chm";
  std::string database = "C:\\host.mdb";
  EXPECT_EQ(window->Initialize(database), Value(true));
  EXPECT_EQ(form.Text("txtVarnelMDB"), database);
  form.Click("mnuContents");
  EXPECT_THAT(desk.toolkit.opened, ElementsAre("VarnelHeb.Chm"));
}

TEST_F(WindowsTest, WhatTheCubeLacksIsMarkedAndToldAndKept) {
  SaveAll();
  auto setting = *desk.StoredSource("Sales");
  setting.CountMoney = 20;
  setting.MoneySets[2].Measure = setting.MoneySets[5].Measure = "Profit";
  setting.MoneySets[4].Measure = "AMOUNT";
  setting.MoneySets[6].Measure = "Loss";
  SaveMoneyMeasures(desk.host, desk.publics.environment, setting);
  form.Raise(FormEvent::kClicked, "comboDataSource");
  EXPECT_THAT(desk.TakeBoxes(), ElementsAre(Critical("MEASURES \r\n\r\nProfit\r\nLoss")));
  for (int row = 0; row < kMoneySetCount; ++row) {
    const bool missing = row == 2 || row == 5 || row == 6;
    EXPECT_EQ(form.At({"TextMeasure", row}).Error, missing) << row;
    EXPECT_EQ(form.At({"ComMeasure", row}).Caption, missing ? "Error" : "Measure");
  }
  desk.files.Delete(desk.Cube());
  const auto gone = [](const std::string& procedure) {
    return testing::Field(&MessageBox::text,
                          AllOf(HasSubstr("sample.cub"), HasSubstr("Function : " + procedure)));
  };
  form.Raise(FormEvent::kClicked, "comboDataSource");
  EXPECT_THAT(desk.TakeBoxes(),
              ElementsAre(gone("UpdObsList\r\nModule : FrmPeriosd\r\n"),
                          Critical("MEASURES \r\n\r\nAmount\r\nProfit\r\nAMOUNT\r\nLoss")));
  desk.toolkit.in_window = {[](Form& option) { option.Click("cmdOk"); }};
  form.Click("cmdOptions");
  EXPECT_THAT(desk.TakeBoxes(), ElementsAre(gone("SetCmbMeas2\r\nModule : FrmPeriods\r\n")));
  form.Click("ComSaveSet");
  const auto kept = desk.StoredSource("Sales");
  EXPECT_EQ(kept->OBS + kept->MoneySets[6].Measure, "Ledger1Loss");
  EXPECT_EQ(kept->CountMoney, 20) << "another program's; only a typed one is refused";
  desk.toolkit.in_window = {[](Form& option) {
    option.SetText("txtCountMoney", "14");
    EXPECT_EQ(option.Text("txtCountMoney"), "");
    for (const auto& [typed, wrong] : {std::pair("2", false), std::pair("", true)}) {
      option.Type("txtCountMoney", typed);
      EXPECT_EQ(option.At("txtCountMoney").Error, wrong) << typed;
    }
  }};
  form.Click("cmdOptions");
}

TEST_F(WindowsTest, WhyARunFailedIsShownInFullWithWhatToDo) {
  SaveAll();
  const struct {
    const char* name;
    std::function<void()> spoil;
    std::vector<std::string> said;
    std::vector<std::string> windows;
  } rows[] = {
      {"a measure",
       [&] {
         auto setting = *desk.StoredSource("Sales");
         setting.MoneySets[2].Measure = "Profit";
         SaveMoneyMeasures(desk.host, desk.publics.environment, setting);
         form.Raise(FormEvent::kClicked, "comboDataSource");
         desk.TakeBoxes();
       },
       {"Not Valid Measure.Check your Settings", "has no measure \"Profit\"", "marked rows"},
       {}},
      {"dates",
       [&] {
         auto texts = test::SampleLedger();
         texts.schema.replace(texts.schema.find("\"Date\""), 6, "\"Days\"");
         BuildInto(desk.folder, texts);
       },
       {"Invalid date", "no dimension \"Date\"", "Mend this"},
       {"frmLacks"}},
      {"lines",
       [&] {
         auto texts = test::SampleLedger();
         texts.schema = std::regex_replace(texts.schema, std::regex("\"QeL\""), "\"Lines\"");
         BuildInto(desk.folder, texts);
         auto setting = *desk.StoredSource("Sales");
         setting.MoneySets[2].Measure = setting.MoneySets[1].Measure;
         SaveMoneyMeasures(desk.host, desk.publics.environment, setting);
       },
       {"QeL", "Mend this"},
       {"frmLacks"}},
      {"the cube",
       [&] { desk.files.Delete(desk.Cube()); },
       {"Connection error", "sample.cub", "choose another cube"},
       {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    row.spoil();
    desk.toolkit.shown.clear();
    form.Click("cmdQuery");
    const auto boxes = desk.TakeBoxes();
    ASSERT_EQ(boxes.size(), 1U);
    form.Click("cmdCopyResult");
    for (const std::string& said : row.said) {
      EXPECT_THAT(boxes[0].text, HasSubstr(said));
      EXPECT_THAT(desk.toolkit.copied, HasSubstr(said));
    }
    EXPECT_TRUE(form.At("lblCause").Visible);
    EXPECT_FALSE(form.At("lvwRows").Visible || form.At("chtMoney").Visible);
    EXPECT_TRUE(form.At({"TextMeasure", 2}).Error);
    EXPECT_EQ(desk.toolkit.shown, row.windows);
  }
}

TEST_F(WindowsTest, WhatIsTypedForTheCubeOffersItsCubesAndTheLastSetsAreChosenAgain) {
  form.Type("TxtFileName", " " + desk.Cube() + " ");
  form.Leave("TxtFileName");
  EXPECT_EQ(form.Text("txtCubeName") + form.Text("CmbObs"), "QELLedger1");
  form.Type("TxtFileName", desk.folder.File("none.cub"));
  form.Leave("TxtFileName");
  form.Leave("TxtFileName");
  EXPECT_EQ(desk.TakeBoxes().size(), 1U) << "told once";
  SaveAll();
  form.Click("cmdCopyMeasure");
  window->Show();
  const auto second = desk.Open();
  desk.toolkit.in_window = {[](Form& shown) {
    EXPECT_EQ(shown.Text("comboDataSource") + shown.Text("ComboPeriods"), "SalesHalf 1");
    EXPECT_EQ(shown.Text({"TextQty", 4}), "Units");
  }};
  second->Show();
}

TEST_F(WindowsTest, FilesArePickedFromTheSettingsFolder) {
  desk.toolkit.picked = "picked";
  desk.toolkit.in_window = {[](Form& selection) { selection.Click("ComCubeFile"); }};
  for (const char* button : {"cmdVarnelMDB", "cmdActFile", "cmdCube", "cmdOutput"}) {
    std::filesystem::current_path("/");
    form.Click(button);
  }
  std::filesystem::current_path("/");
  std::vector<std::string> told;
  for (const FileDialog& dialog : desk.toolkit.dialogs) {
    told.push_back(dialog.title + "; " + dialog.filter + "; " + std::to_string(dialog.flags) +
                   (dialog.save ? "; save" : ""));
  }
  const std::string program = test::kExecutable, open = program + " - Open a file; ";
  EXPECT_THAT(told,
              ElementsAre(open + "*.*|*.*; 4100", open + "*.*|*.*; 4100",
                          open + "Cub files(*.cub)|*.cub; 4100",
                          program + " - Save a file; Excel files(*.xlsX)|*.xlsX; 2052; save"));
  EXPECT_THAT(desk.toolkit.folders, testing::Each(desk.settings));
  for (const char* field : {"txtVarnelMDB", "txtActFile", "txtOutput"}) {
    EXPECT_THAT(form.Text(field), testing::StartsWith("picked"));
  }
}

TEST_F(WindowsTest, ACubeIsChosenFromAFileThatHasOne) {
  std::ofstream(desk.folder.File("bad.cub")) << "no cube";
  frmCube selection(services);
  desk.toolkit.in_window = {[&](Form& shown) {
    const std::string good = desk.Cube(), bad = desk.folder.File("bad.cub");
    for (const std::string& picked : {good, good, std::string(), bad}) {
      desk.toolkit.picked = picked;
      shown.Click("ComCubeFile");
      EXPECT_EQ(shown.Text("TxtFileName"), picked.empty() ? good : picked);
      EXPECT_EQ(shown.At("ComboCube").Enabled, picked != bad);
      EXPECT_EQ(shown.At("ComboCube").List.size(), picked == bad ? 0U : 1U);
    }
    shown.Click("cmdOk");
  }};
  EXPECT_FALSE(selection.ShowForm()) << "no cube is chosen in a file that has none";
  const auto boxes = desk.TakeBoxes();
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_THAT(boxes[0].text, HasSubstr("Function : ComCubeFile_Click\r\nModule : frmCube"));
  selection.UpdListCube(nullptr);
  EXPECT_THAT(desk.TakeBoxes(), ElementsAre(Box("QeL cube not found...")));
}

}  // namespace
}  // namespace vok
