// What the main query window asks before something of the person's is lost.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/ui/real_desk.h"

namespace vok {
namespace {

using test::Box;
using testing::ElementsAre;
using testing::IsEmpty;

/// All that a question says, part by part.
std::string SaidBy(const Form& question) {
  std::string said = question.Caption;
  for (const Control& control : question.Controls()) {
    if (control.Type != ControlType::kFrame) said += "|" + WithoutAccessMark(control.Caption);
  }
  return said;
}

struct QuestionsTest : testing::Test {
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

  test::RealDesk desk;
};

TEST_F(QuestionsTest, WhatCannotBeDoneIsToldAndChangesNothing) {
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
  };
  for (const auto& [what, act, boxes] : cases) {
    act();
    EXPECT_EQ(desk.TakeBoxes(), boxes) << what;
  }
  EXPECT_TRUE(desk.StoredPeriods("periods"))
      << "the period set is saved before the data source is refused";
}

TEST_F(QuestionsTest, ASetIsDeletedOnlyWhenThePersonSaysSo) {
  const auto window = desk.Open();
  std::string order;
  for (const Control& control : window->form().Controls()) {
    if (control.Type == ControlType::kCommandButton) order += control.Name + " ";
  }
  EXPECT_TRUE(order.ends_with("cmdStop cmdDeleteSource cmdDeletePeriods ")) << order;
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

TEST_F(QuestionsTest, UnsavedEntriesAreAskedAboutBeforeAnotherSetReplacesThem) {
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
    EXPECT_EQ(desk.StoredPeriods("Half 1")->Period(1).PeriodName, stored);
    Answer(1);
    form.SetText("ComboPeriods", "half 1");
    form.Raise(FormEvent::kClicked, "ComboPeriods");
    EXPECT_THAT(desk.TakeBoxes(), IsEmpty());
  }
}

TEST_F(QuestionsTest, ChangedSetsShowInTheTitleAndARunSaysWhichOfThemItReads) {
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
    EXPECT_EQ(desk.StoredPeriods("Half 1")->Period(1).PeriodName, c.stored);
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

}  // namespace
}  // namespace vok
