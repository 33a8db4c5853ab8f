#include "ui/model/period_dates.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "platform/failure.h"
#include "settings/period_names.h"
#include "system/posix/icu_locale.h"
#include "tests/support/memory_host.h"
#include "tests/support/ui/scripted_toolkit.h"

namespace vok {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr int kRow = 4;

using enum MessageIcon;
const MessageBox kNotValid{" Not Valid date ", "", kNone, {}, "", 0};
const MessageBox kInvalid{
    "Invalid date entered at period", test::kExecutable, kCritical, {}, "", 0};

struct Window {
  explicit Window(const std::string& country) : locale(country) {
    const Panel panel(form);
    for (int row = 0; row < kPeriodCount; ++row) dates.AddPeriodTo(panel, row, row);
    dates.AddCommandsTo(panel);
    dates.Load();
  }
  /// "control" is clicked, "control gray" grayed, "control text" typed into and left, each in
  /// `kRow` where it has rows.
  void Do(const std::string& step) {
    const std::string control = step.substr(0, step.find(' '));
    const bool in_row = form.Has({control, kRow});
    const ControlId id(control, in_row ? kRow : kNoIndex);
    if (control == step) return form.Click(id);
    const std::string text = step.substr(control.size() + 1);
    if (text == "gray") return form.SetValue(id, kGrayed);
    form.SetText(id, text);
    form.Leave(id);
  }
  std::string Dates(int row) const {
    return form.Text({"txtDate1", row}) + "|" + form.Text({"txtDate2", row});
  }
  const std::vector<MessageBox>& boxes() const { return memory.boxes.boxes; }

  IcuLocale locale;
  test::MemoryHost memory;
  Host host =
      memory.On(memory.no_database, memory.no_cube, memory.no_spreadsheet, locale, memory.clock);
  Publics publics;
  test::ScriptedToolkit toolkit;
  const WindowServices services{host, publics, toolkit};
  Form form{"frm", "0"};
  PeriodDates dates{services, form};
};

TEST(PeriodDates, TypedDatesAreBroughtIntoTheFormOfTheCountryAndChecked) {
  struct {
    const char* locale;
    const char* steps;
    const char* dates;
    const char* focus = "";
    std::vector<MessageBox> boxes = {};
  } const cases[] = {
      {"en_GB", "chkFromD;chkUntilD;txtDate1 15/03/2024;txtDate2 10/02/2025",
       "01/03/2024|28/02/2025"},
      {"en_US", "chkFromD;chkUntilD;txtDate1 3/15/2024;txtDate2 4/10/2024", "3/1/2024|4/30/2024"},
      {"sv_SE", "chkFromD;chkUntilD;txtDate1 2024-12-15;txtDate2 2024-12-15",
       "2024-12-01|2024-12-31"},
      {"he_IL", "chkFromD;chkUntilD;txtDate1 15 במרץ 2024;txtDate2 10.4.2024",
       "1.3.2024|30.4.2024"},
      {"en_GB", "txtDate1 15/03/2024;txtDate2 14/03/2024", "15/03/2024|", "txtDate2", {kInvalid}},
      {"en_GB", "chkUntilD;txtDate1 15/03/2024;txtDate2 14/03/2024", "15/03/2024|31/03/2024"},
      {"en_GB", "txtDate1 abc", "00:00:00|", "txtDate1"},
      {"en_GB", "txtDate2 30/02/2024", "|", "txtDate2"},
      {"en_GB", "chkFromD;chkUntilD;txtDate1 ;txtDate2 ", "|"},
      {"en_GB", "chkFromD gray;txtDate1 15/03/2024", "01/03/2024|"},
      // a period with its opening balance begins with its year
      {"en_GB", "CheckItraPticha;txtDate1 15/03/2024", "01/01/2024|"},
      {"en_US", "txtDate1 3/15/2024;CheckItraPticha", "1/1/2024|"},
      {"sv_SE", "txtDate1 2024-03-15;CheckItraPticha", "2024-01-01|"},
      {"he_IL", "CheckItraPticha;txtDate1 15.3.2024", "1.1.2024|"},
      {"en_GB", "CheckItraPticha gray;txtDate1 15/03/2024", "15/03/2024|"},
      // with both dates there the from date is compared, and stays as typed
      {"en_GB", "txtDate2 10/02/2024;txtDate1 15/02/2024", "|10/02/2024", "", {kNotValid}},
      {"en_GB", "chkFromD;txtDate2 10/02/2024;txtDate1 5/2/2024", "5/2/2024|10/02/2024"},
      {"en_GB", "txtDate2 10/02/2024;txtDate1 10/02/2024", "10/02/2024|10/02/2024"},
      {"en_GB", "txtDate2 10/02/2024;txtDate1 abc", "00:00:00|10/02/2024", "txtDate1"},
      // the command is there once a from date was left
      {"en_GB", "txtDate2 10/02/2024;chkUntilD;Comupd", "|10/02/2024"},
      {"en_GB", "txtDate1 15/03/2024;txtDate2 16/03/2024;chkFromD;chkUntilD;Comupd",
       "01/03/2024|31/03/2024"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.steps);
    Window window(c.locale);
    std::istringstream steps(c.steps);
    for (std::string step; std::getline(steps, step, ';');) window.Do(step);
    EXPECT_EQ(window.Dates(kRow), c.dates);
    EXPECT_EQ(window.Dates(kRow - 1), "|") << "the neighbour";
    EXPECT_EQ(window.form.Focus.value_or(ControlId("")).name, c.focus);
    EXPECT_EQ(window.boxes(), c.boxes);
    const bool refused_late = c.boxes == std::vector{kNotValid};
    const std::string marked = refused_late ? "txtDate1" : c.focus;
    for (const char* field : {"txtDate1", "txtDate2"}) {
      EXPECT_EQ(window.form.At({field, kRow}).Error, marked == field) << field;
    }
    if (marked.empty()) continue;
    window.form.SetText({marked, kRow}, "soon");
    EXPECT_TRUE(window.form.At({marked, kRow}).Error);
    window.form.SetText({marked, kRow}, "2024-03-01");
    EXPECT_FALSE(window.form.At({marked, kRow}).Error);
  }
}

/// The first and the last of the rows that have a from date.
std::string Ends(const PeriodDates& dates) {
  const IcuLocale iso("sv_SE");
  std::vector<std::string> filled;
  for (int number = 1; number <= kPeriodCount; ++number) {
    const Date from = dates.FromDates(number);
    if (from.IsZero()) continue;
    filled.push_back(std::to_string(number) + ": " + iso.ShortDate(from) + " " +
                     iso.ShortDate(dates.UntilDates(number)));
  }
  return filled.front() + ", " + filled.back();
}

TEST(PeriodDates, TheWizardFillsForwardsFromAStartAndBackwardsFromAnEnd) {
  struct {
    int interval;
    const char *start, *end, *today, *first, *shown, *last, *ends;
  } const cases[] = {
      {0, "2024-03-15", "2024-03-14", "", "1", "1", "3",
       "1: 2024-03-01 2024-03-31, 3: 2024-01-01 2024-01-31"},
      {0, "2024-03-15", "2024-03-15", "", "1", "1", "3",
       "1: 2024-03-01 2024-03-31, 3: 2024-05-01 2024-05-31"},
      {3, "", "2024-08-10", "", "", "", "3", "1: 2021-09-01 2022-08-31, 3: 2023-09-01 2024-08-31"},
      {2, "2024-11-05", "", "", "12", "12", "11",
       "11: 2025-05-01 2025-10-31, 12: 2024-11-01 2025-04-30"},
      {0, "", "", "2024-01-31", "13", "", "",
       "1: 2023-01-01 2023-01-31, 12: 2023-12-01 2023-12-31"},
      {1, "", "", "2024-06-30", "0", "", "", "1: 2021-07-01 2021-09-30, 12: 2024-04-01 2024-06-30"},
      {2, "", "", "2024-01-31", "-1", "", "",
       "1: 2018-01-01 2018-06-30, 12: 2023-07-01 2023-12-31"},
      {2, "", "", "2024-12-01", " 2 ", " 2 ", "3",
       "2: 2024-01-01 2024-06-30, 3: 2024-07-01 2024-12-31"},
      {3, "no date", "", "2024-05-15", "3x", "", "nan",
       "1: 2012-01-01 2012-12-31, 12: 2023-01-01 2023-12-31"},
      {0, "2024-01-01", "", "", "1e1", "1e1", "11.5",
       "10: 2024-01-01 2024-01-31, 12: 2024-03-01 2024-03-31"},
  };
  for (const char* country : {"en_GB", "en_US", "sv_SE", "he_IL"}) {
    for (const auto& c : cases) {
      SCOPED_TRACE(std::string(country) + c.ends);
      Window window(country);
      window.memory.clock.now = window.locale.ParseDate(c.today).value_or(Date{});
      window.toolkit.in_window = {[&](Form& wizard) {
        wizard.Choose("lstInterval", c.interval);
        wizard.SetText({"txtDate", 0}, c.start);
        wizard.SetText({"txtDate", 1}, c.end);
        wizard.SetText("txtP1", "5");
        wizard.SetText("txtP1", c.first);
        wizard.SetText("txtP2", c.last);
        EXPECT_EQ(wizard.Text("txtP1"), c.shown);
        wizard.Click("cmdOk");
      }};
      window.form.Click("cmdAutoFill");
      EXPECT_EQ(Ends(window.dates), c.ends);
    }
  }
  Window window("en_GB");
  window.Do("txtDate1 05/05/2023");
  window.toolkit.in_window = {[](Form& wizard) {
    wizard.SetText({"txtDate", 0}, "2024-01-01");
    wizard.SetText("txtP1", "12");
    wizard.SetText("txtP2", "12.6");
    wizard.Click("cmdOk");
  }};
  window.form.Click("cmdAutoFill");
  EXPECT_EQ(Ends(window.dates), "5: 2023-05-05 1899-12-30, 12: 2024-01-01 2024-01-31");
  EXPECT_TRUE(window.form.At({"txtDate1", 1}).Dimmed);
  EXPECT_TRUE(window.form.At({"Comupd", 1}).Enabled);
  ASSERT_EQ(window.boxes().size(), 1U);
  EXPECT_THAT(window.boxes()[0].text,
              AllOf(HasSubstr("Error : 9\r\n"),
                    HasSubstr("Function : cmdOk_Click\r\nModule : frmLiniarDates")));
}

TEST(PeriodDates, ANameIsMarkedWhileItSaysAnotherTimeThanItsRow) {
  struct {
    const char *locale, *name, *from, *until;
    bool contradicts;
    bool given = true;
  } const cases[] = {
      {"en_GB", "Jan 2024", "2013-01-01", "2013-01-31", true},
      {"en_GB", "Jan 2013", "2013-01-01", "2013-01-31", false},
      {"ru_RU", "январь 2013", "2013-02-01", "2013-02-28", true},
      {"en_GB", "Jan 2013", "2013-01-01", "2013-03-31", true},
      {"en_GB", "January", "2013-02-01", "2013-02-28", true},
      {"en_GB", "Jan", "2012-11-01", "2013-01-31", false},  // of which year is not said
      {"en_GB", "Jan 24", "2013-01-01", "2013-01-31", true},
      {"en_GB", "Jan '13", "2013-01-01", "2013-01-31", false},
      {"en_GB", "Jan 24", "2013-01-21", "2013-01-27", false},  // a week of that day
      {"en_GB", "Jan 24", "2013-02-18", "2013-02-24", true},
      {"en_GB", "Feb 29", "2024-02-01", "2024-02-29", false},  // called by its last day
      {"en_GB", "Feb 29", "2024-03-01", "2024-03-31", true},
      {"en_GB", "2013 Q1", "2013-04-01", "2013-06-30", true, false},
      {"en_GB", "2013 Q1", "2013-02-01", "2013-02-28", false, false},
      {"en_GB", "2013 H2", "2013-07-01", "2013-12-31", false, false},
      {"en_GB", "2013-07 - 2014-06", "2013-07-01", "2014-06-30", false, false},
      {"en_GB", "2013", "2013-07-01", "2014-06-30", false, false},  // a business year
      {"en_GB", "2013", "2014-07-01", "2015-06-30", true, false},
      {"en_GB", "Budget of 2012 for 2013", "2013-01-01", "2013-12-31", false},
      {"en_GB", "Budget 2012", "2013-01-01", "2013-12-31", true},
      {"en_GB", "Plan 20125", "2013-01-01", "2013-12-31", false},
      {"en_GB", "2012", "", "2013-12-31", true, false},
      {"en_GB", "2012", "", "", false, false},
      {"en_GB", "", "2013-01-01", "2013-12-31", false, false},
  };
  for (const auto& [locale, name, from, until, contradicts, given] : cases) {
    SCOPED_TRACE(std::string(name) + " " + from);
    for (const bool name_first : {true, false}) {
      Window window(locale);
      if (name_first) window.form.SetText({"TextPeriod", kRow}, name);
      window.form.SetText({"txtDate1", kRow}, from);
      window.form.SetText({"txtDate2", kRow}, until);
      window.form.SetText({"TextPeriod", kRow}, name);
      const Control& field = window.form.At({"TextPeriod", kRow});
      EXPECT_EQ(field.Error, contradicts);
      EXPECT_EQ(field.ToolTipText.empty(), !contradicts);
      EXPECT_EQ(IsGivenName(name), given);
      window.form.SetText({"txtDate1", kRow}, "");
      window.form.SetText({"txtDate2", kRow}, "");
      EXPECT_FALSE(field.Error);
    }
  }
}

TEST(PeriodDates, PeriodsAreNamedByTheirDatesAndGivenNamesOnlyWhenThePersonSaysSo) {
  const std::pair<ControlId, const char*> answers[] = {
      {"cmdCancel", "2024-01|Jan & Feb 2024|Wrong"},
      {{"cmdAnswer", 1}, "2013 Q1|Jan & Feb 2024|Wrong"},
      {{"cmdAnswer", 0}, "2013 Q1|2013-02 - 2013-03|Wrong"}};
  for (const auto& [button, named] : answers) {
    Window window("en_GB");
    PeriodSet set;
    set.Period(1) = {"2024-01", Date::FromCivil(2013, 1, 1), Date::FromCivil(2013, 3, 31), false};
    set.Period(2) = {"Jan & Feb 2024", Date::FromCivil(2013, 2, 1), Date::FromCivil(2013, 3, 31),
                     false};
    set.Period(3) = {"Wrong", Date::FromCivil(2013, 3, 31), Date::FromCivil(2013, 1, 1), false};
    window.dates.Show(set);
    window.toolkit.in_window = {[&, &id = button](Form& question) {
      EXPECT_EQ(question.At({"lblRow", 0}).Caption, "Jan && Feb 2024");
      EXPECT_EQ(question.At({"lblRow", 1}).Caption, "2013-02 - 2013-03");
      EXPECT_FALSE(question.Has({"lblRow", 2}));
      question.Click(id);
    }};
    window.form.Click("cmdNamePeriods");
    const Form& form = window.form;
    EXPECT_EQ(form.Text({"TextPeriod", 0}) + "|" + form.Text({"TextPeriod", 1}) + "|" +
                  form.Text({"TextPeriod", 2}),
              named);
  }
}

TEST(PeriodDates, AShownSetLeavesNothingOfTheOneBefore) {
  Window window("de_DE");
  const std::string empty = window.dates.Entered();
  PeriodSet before, after;
  before.Period(1) = {"", Date::FromCivil(2023, 1, 1), Date::FromCivil(2023, 12, 31), true};
  before.Period(7) = {"", Date::FromCivil(2023, 7, 1), Date::FromCivil(2023, 7, 31), false};
  after.Period(1) = {"März", Date::FromCivil(2024, 3, 15), Date{}, false};
  after.Period(2) = {"", Date{}, Date{}, true};
  window.dates.Show(before);
  window.dates.Show(after);
  EXPECT_EQ(window.Dates(0) + window.Dates(6), "15.03.2024||");
  window.form.SetText({"txtDate2", 5}, "morgen");
  EXPECT_THROW(window.dates.Read(), Failure);
  EXPECT_TRUE(window.form.At({"txtDate2", 5}).Error);
  window.dates.Show(before);
  EXPECT_FALSE(window.form.At({"txtDate2", 5}).Error);
  window.form.SetText({"txtDate1", 0}, "morgen");
  window.form.Click("cmdCleanDates");
  EXPECT_EQ(window.dates.Entered(), empty);
}

}  // namespace
}  // namespace vok
