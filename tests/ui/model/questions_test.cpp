// What the main query window asks and tells before something of the person's is lost.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "settings/set_lists.h"
#include "tests/support/ui/real_desk.h"

namespace vok {
namespace {

using test::Box;
using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
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
  /// The next question is answered with this button.
  void Answer(const ControlId& button) {
    desk.toolkit.in_window = {[this, button](Form& question) {
      asked.push_back(SaidBy(question));
      question.Click(button);
    }};
  }
  void SaveAll() {
    desk.FillIn(form);
    form.Click("ComSaveSet");
    EXPECT_THAT(desk.TakeBoxes(), IsEmpty());
  }
  /// Each stored set with the first of its fields that a test changes.
  std::string Stored() const {
    std::string all;
    for (const PeriodSet& set : ReadAllPeriodSets(desk.host, desk.publics.environment)) {
      all += set.SetName + "=" + set.Period(1).PeriodName + " ";
    }
    for (const auto& source : ReadAllDataSources(desk.host, desk.publics.environment)) {
      all += source.SetName + "=" + source.ActFile + " ";
    }
    return all;
  }

  std::vector<std::string> asked;
  test::RealDesk desk;
  std::unique_ptr<FrmPeriods> window = desk.Open();
  Form& form = window->form();
};

TEST_F(QuestionsTest, WhatCannotBeDoneIsToldAndChangesNothing) {
  form.Click("cmdDeletePeriods");
  EXPECT_FALSE(window->LoadPeriodSet("unknown"));
  form.SetText("comboDataSource", "unknown");
  form.Raise(FormEvent::kClicked, "comboDataSource");
  EXPECT_THAT(desk.TakeBoxes(), IsEmpty());
  form.Click("mnuSave");
  EXPECT_THAT(desk.TakeBoxes(),
              ElementsAre(Box("No Data Source selected!\r\n Save of datasource Canceled!\r\n\r\n"
                              "Host database\r\nCube file\r\nCube\r\nOBS member")));
  form.SetText("txtCubeName", "x");
  for (const char* field : {"txtVarnelMDB", "TxtFileName", "txtCubeName", "CmbObs"}) {
    EXPECT_EQ(form.At(field).Error, form.Text(field).empty()) << field;
  }
  EXPECT_EQ(form.Focus->name, "txtVarnelMDB");
  EXPECT_EQ(Stored(), "Periods= ") << "it is saved before the data source is refused";
  desk.memory.clock.now = Date{Date::FromCivil(2024, 11, 15).serial + (16 * 60 + 32) / 1440.0};
  for (const char* field : {"txtVarnelMDB", "TxtFileName", "CmbObs"}) form.SetText(field, "x");
  form.SetText("comboDataSource", "");
  EXPECT_TRUE(window->SaveSettings());
  EXPECT_EQ(Stored(), "Periods= Save  15/11 16:32= ") << "named by the time";
  const auto refused = ElementsAre(Field(&MessageBox::text, HasSubstr("may not contain #")));
  for (const char* combo : {"ComboPeriods", "comboDataSource"}) {
    form.SetText(combo, "Per#ods");
    form.Raise(FormEvent::kClicked, combo);
    EXPECT_THAT(desk.TakeBoxes(), refused) << combo;
  }
}

TEST_F(QuestionsTest, ASetIsDeletedOnlyWhenThePersonSaysSo) {
  SaveAll();
  struct {
    const char *button, *combo, *name;
  } const cases[] = {{"cmdDeletePeriods", "ComboPeriods", "Half 1"},
                     {"cmdDeleteSource", "comboDataSource", "Sales"}};
  for (const auto& [button, combo, name] : cases) {
    for (const bool kept : {true, false}) {
      desk.memory.boxes.answer = kept ? MessageAnswer::kNo : MessageAnswer::kYes;
      form.Click(button);
      EXPECT_THAT(desk.TakeBoxes(),
                  ElementsAre(Box(std::string("Are you shure you want to delete ") + name,
                                  MessageIcon::kQuestion, MessageButtons::kYesNo)));
      EXPECT_EQ(form.At(combo).List.size(), kept ? 1U : 0U);
      EXPECT_EQ(form.Text(combo), kept ? name : "");
    }
  }
}

TEST_F(QuestionsTest, ASetThatCouldNotBeLoadedIsNotReplacedUnseen) {
  SaveAll();
  form.SetText({"TextPeriod", 0}, "Changed");
  form.SetText("txtActFile", "changed");
  for (const char* combo : {"ComboPeriods", "comboDataSource"}) form.SetText(combo, "Other");
  desk.files.fail_at = desk.files.calls + 1;
  form.Click("ComSaveSet");
  EXPECT_THAT(desk.TakeBoxes(),
              ElementsAre(Field(&MessageBox::text,
                                HasSubstr("Error saving settings\r\n\r\nFunction : SavePeriods\r\n"
                                          "Module : FrmPeriods\""))));
  EXPECT_EQ(Stored(), "Half 1=Spring Sales= Other=changed ");
  form.Click("ComSaveSet");
  const std::string before = "Half 1=Spring Other=Changed Sales= Other=changed ";
  ASSERT_EQ(Stored(), before);
  for (const char* combo : {"ComboPeriods", "comboDataSource"}) {
    desk.files.fail_at = desk.files.calls + 1;
    form.Choose(combo, 0);
    EXPECT_EQ(desk.TakeBoxes().size(), 1U) << "not loaded";
    form.Click("ComSaveSet");
    EXPECT_THAT(desk.TakeBoxes(),
                ElementsAre(Field(&MessageBox::text, AllOf(HasSubstr("could not be loaded"),
                                                           HasSubstr("delete it first"),
                                                           HasSubstr(form.Text(combo))))));
    EXPECT_EQ(Stored(), before);
    form.SetText(combo, "Other");
  }
  form.Choose("ComboPeriods", 0);
  EXPECT_EQ(form.Text({"TextPeriod", 0}), "Spring") << "read at last";
  form.Click("ComSaveSet");
  EXPECT_THAT(desk.TakeBoxes(), IsEmpty());
}

TEST_F(QuestionsTest, UnsavedEntriesAreAskedAboutBeforeAnotherSetReplacesThem) {
  SaveAll();
  form.SetText("ComboPeriods", "Other");
  form.SetText({"TextPeriod", 0}, "Autumn");
  form.Click("ComSaveSet");
  form.SetText("ComboPeriods", " half 1 ");
  form.Leave("ComboPeriods");
  EXPECT_EQ(form.Text("ComboPeriods"), "half 1");
  form.SetText("comboDataSource", " sales ");
  form.Leave("comboDataSource");
  EXPECT_EQ(form.Text("comboDataSource"), "sales");
  EXPECT_EQ(form.Text({"TextPeriod", 0}), "Spring")
      << "a typed name loads while nothing is unsaved";
  struct {
    ControlId answer;
    const char *name, *period, *stored;
  } const cases[] = {{"cmdCancel", "half 1", "Edited", "Spring"},
                     {{"cmdAnswer", 1}, "Other", "Autumn", "Spring"},
                     {{"cmdAnswer", 0}, "Other", "Autumn", "Edited"}};
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
    Answer({"cmdAnswer", 1});
    form.SetText("ComboPeriods", "half 1");
    form.Raise(FormEvent::kClicked, "ComboPeriods");
    EXPECT_THAT(desk.TakeBoxes(), IsEmpty());
  }
}

TEST_F(QuestionsTest, ChangedSetsShowInTheTitleAndARunSaysWhichOfThemItReads) {
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
  const std::string of_run =
      "Save the changes?|Changes that are not saved:|Half 1|Save and run|Run as saved|Cancel";
  Answer("cmdCancel");
  desk.toolkit.in_run = [] { ADD_FAILURE() << "cancelled"; };
  form.Click("mnuRun");
  EXPECT_EQ(changed(), " - *Half 1");
  Answer({"cmdAnswer", 0});
  desk.toolkit.in_run = [&] { EXPECT_EQ(changed(), "") << "as the run is shown"; };
  form.Click("mnuRun");
  EXPECT_THAT(asked, ElementsAre(of_run, of_run));
  EXPECT_EQ(desk.publics.settings.periods.Period(1).PeriodName, "R&D");
  EXPECT_EQ(desk.StoredPeriods("Half 1")->Period(1).PeriodName, "R&D");
  // Looking at the wizard changes nothing, though the rows then show their zero dates.
  desk.toolkit.in_window = {[](Form& wizard) { wizard.Click("cmdCancel"); }};
  form.Click("cmdAutoFill");
  EXPECT_EQ(form.Text({"txtDate1", 11}), "30/12/1899");
  EXPECT_EQ(changed(), "");
  form.Type({"TextPeriod", 0}, "Last");
  Answer({"cmdAnswer", 0});
  form.Click("cmdClose");
  EXPECT_EQ(asked.back(),
            "Save the changes?|Changes that are not saved:|Half 1|Save|Discard|Cancel");
  EXPECT_EQ(desk.StoredPeriods("Half 1")->Period(1).PeriodName, "Last");
}

}  // namespace
}  // namespace vok
