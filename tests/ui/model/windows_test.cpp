// The main query window, driven by the names of its controls alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <charconv>

#include "tests/support/ui/real_desk.h"
#include "texts/string_table.h"
#include "texts/text_numbers.h"

namespace vok {
namespace {

using test::Box;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct WindowsTest : testing::Test {
  test::RealDesk desk;
};

TEST_F(WindowsTest, WhatIsSavedIsShownAgain) {
  const auto first = desk.Open();
  EXPECT_FALSE(first->form().At("cmdHelp").Enabled);  // no help file lies beside the component
  desk.FillIn(first->form());
  first->form().Click("ComSaveSet");
  EXPECT_THAT(desk.TakeBoxes(), IsEmpty());
  const auto second = desk.Open();
  second->form().Choose("comboDataSource", 0);
  second->form().Choose("ComboPeriods", 0);
  for (const Control& control : first->form().Controls()) {
    if (control.Name.starts_with("chk")) continue;  // these two are not stored
    EXPECT_EQ(second->form().At(control.Id()).Text, control.Text) << control.Name;
    EXPECT_EQ(second->form().At(control.Id()).Value, control.Value) << control.Name;
  }
  const auto stored = desk.StoredSource("sales");
  EXPECT_EQ(stored->MoneySets[1].MoneySet, Value("NIS"));
  EXPECT_TRUE(stored->MoneySets[2].MoneySet.IsNull());
}

TEST_F(WindowsTest, ARunIsShownWithItsRowsAndMoney) {
  const auto window = desk.Open();
  Form& form = window->form();
  desk.FillIn(form);
  form.Click("ComSaveSet");
  form.SetText("txtOutput", desk.folder.File("out"));
  form.Click("cmdQuery");
  const std::string workbook = desk.folder.File("out.xlsX");
  EXPECT_TRUE(form.At("fraResult").Visible);
  EXPECT_EQ(form.Text("txtResult"), workbook);
  const Control& list = form.At("lvwRows");
  EXPECT_EQ(form.At("lblResultRows").Caption, std::to_string(list.Rows.size()) + " rows in 0.0 s");
  std::string headers, bars;
  for (const ControlItem& item : list.Items) headers += item.Text + (item.IsNumber ? "# " : " ");
  EXPECT_EQ(headers, "A B C D J K Q1>Spring# M1>Spring# Q2>Year# M2>Year# ");
  EXPECT_THAT(list.Rows.front(), ElementsAre("0", "110", "Returns", "Retouren", "החזרות",
                                             "Возвраты", "1", "", "3", "98.33"));
  for (const Bar& bar : form.At("chtMoney").Bars) bars += bar.caption + " " + bar.value_text + ";";
  EXPECT_EQ(bars, "Spring 0.00;Year 155.75;");
  form.Click("cmdOpenWorkbook");
  form.Click("cmdOpenFolder");
  EXPECT_THAT(desk.toolkit.opened, ElementsAre(workbook, desk.folder.path()));
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

TEST_F(WindowsTest, TheHostProgramOpensTheWindowOnItsDatabase) {
  desk.files.Append(desk.host.component.folder + "\\VarnelHeb.Chm", "");
  clMe me(desk.host, desk.publics, [&](const Host& host, Publics& publics) {
    return std::make_unique<FrmPeriods>(host, publics, desk.toolkit);
  });
  desk.toolkit.in_window = {[](Form& form) {
    EXPECT_EQ(form.Text("txtVarnelMDB"), "C:\\host.mdb");
    form.Click("mnuContents");
  }};
  int32_t error = 7;
  std::string database = "C:\\host.mdb";
  EXPECT_EQ(me.ShowQCform(error, database), Value(true));
  EXPECT_THAT(desk.toolkit.help, ElementsAre(HasSubstr("VarnelHeb.Chm")));
}

}  // namespace
}  // namespace vok
