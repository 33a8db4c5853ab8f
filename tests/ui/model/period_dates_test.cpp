#include "ui/model/period_dates.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "platform/failure.h"
#include "settings/period_names.h"
#include "tests/support/ui/window_host.h"

namespace vok {
namespace {

constexpr int kRow = 4;

using enum MessageIcon;
const MessageBox kNotValid{" Not Valid date ", "", kNone, {}, "", 0};
const MessageBox kInvalid{
    "Invalid date entered at period", test::kExecutable, kCritical, {}, "", 0};

struct Window {
  explicit Window(const std::string& locale) : desk(locale), dates(desk.services, form) {
    const Panel panel(form);
    for (int row = 0; row < kPeriodCount; ++row) dates.AddPeriodTo(panel, row, row);
    dates.AddCommandsTo(panel);
    dates.Load();
  }
  /// "control" is clicked, "control text" typed into and left, each in `kRow` where it has rows.
  void Do(const std::string& step) {
    const std::string control = step.substr(0, step.find(' '));
    const bool in_row = form.Has({control, kRow});
    const ControlId id(control, in_row ? kRow : kNoIndex);
    if (control == step) return form.Click(id);
    form.SetText(id, step.substr(control.size() + 1));
    form.Leave(id);
  }
  std::string Dates(int row) const {
    return form.Text({"txtDate1", row}) + "|" + form.Text({"txtDate2", row});
  }
  const std::vector<MessageBox>& boxes() const { return desk.memory.boxes.boxes; }

  test::WindowHost desk;
  Form form{"frm", "0"};
  PeriodDates dates;
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
      {"en_GB", "chkUntilD;txtDate2 10/02/2024", "|29/02/2024"},
      {"en_GB", "txtDate1 5/3/24;txtDate2 5/3/24", "05/03/2024|05/03/2024"},
      {"en_US", "chkFromD;chkUntilD;txtDate1 3/15/2024;txtDate2 4/10/2024", "3/1/2024|4/30/2024"},
      {"en_US", "txtDate1 March 5, 2024;txtDate2 5 Apr 2024", "3/5/2024|4/5/2024"},
      {"sv_SE", "chkFromD;chkUntilD;txtDate1 2024-12-15;txtDate2 2024-12-15",
       "2024-12-01|2024-12-31"},
      {"he_IL", "chkFromD;chkUntilD;txtDate1 15 במרץ 2024;txtDate2 10.4.2024",
       "1.3.2024|30.4.2024"},
      {"en_GB", "txtDate1 15/03/2024;txtDate2 14/03/2024", "15/03/2024|", "txtDate2", {kInvalid}},
      {"en_GB", "chkUntilD;txtDate1 15/03/2024;txtDate2 14/03/2024", "15/03/2024|31/03/2024"},
      {"en_GB", "txtDate1 abc", "00:00:00|", "txtDate1"},
      {"en_US", "txtDate1 15/15/2024", "12:00:00 AM|", "txtDate1"},
      {"en_GB", "txtDate2 30/02/2024", "|", "txtDate2"},
      {"en_GB", "chkFromD;chkUntilD;txtDate1 ;txtDate2 ", "|"},
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
    const auto shown = [&](const char* field) {
      return window.desk.locale.ParseDate(window.form.Text({field, kRow})).value_or(Date{});
    };
    DateList from, until;
    from(kRow + 1) = shown("txtDate1");
    until(kRow + 1) = shown("txtDate2");
    EXPECT_EQ(window.dates.FromDates, from);
    EXPECT_EQ(window.dates.UntilDates, until);
    if (marked.empty()) continue;
    window.form.SetText({marked, kRow}, "soon");
    EXPECT_TRUE(window.form.At({marked, kRow}).Error);
    window.form.SetText({marked, kRow}, "2024-03-01");
    EXPECT_FALSE(window.form.At({marked, kRow}).Error);
  }
  Window grayed("en_GB");
  grayed.form.SetValue("chkFromD", kGrayed);
  grayed.Do("txtDate1 15/03/2024");
  EXPECT_EQ(grayed.Dates(kRow), "01/03/2024|") << "is more than unchecked";
}

TEST(PeriodDates, APeriodWithItsOpeningBalanceBeginsWithItsYear) {
  struct {
    const char *locale, *typed;
    int box;
    const char* from;
  } const cases[] = {
      {"en_GB", "15/03/2024", kChecked, "01/01/2024"}, {"en_US", "3/15/2024", kChecked, "1/1/2024"},
      {"sv_SE", "2024-03-15", kChecked, "2024-01-01"}, {"he_IL", "15.3.2024", kChecked, "1.1.2024"},
      {"en_GB", "15/03/2024", kGrayed, "15/03/2024"},  {"en_GB", "soon", kChecked, "soon"},
  };
  for (const auto& [locale, typed, box, from] : cases) {
    for (const bool box_first : {false, true}) {
      Window window(locale);
      if (box_first) window.form.SetValue({"CheckItraPticha", kRow}, box);
      window.form.SetText({"txtDate1", kRow}, typed);
      window.form.SetValue({"CheckItraPticha", kRow}, box);
      EXPECT_EQ(window.Dates(kRow), from + std::string("|")) << locale << box_first;
    }
  }
}

TEST(PeriodDates, AutoFillShowsWhatTheWizardFilledAndTheRest) {
  for (const bool filled : {true, false}) {
    Window window("en_GB");
    window.Do("txtDate1 05/05/2023");
    window.desk.toolkit.in_window = {[&](Form& wizard) {
      wizard.SetText({"txtDate", 0}, "31/1/2024");
      wizard.SetText("txtP1", "2");
      wizard.SetText("txtP2", "3");
      wizard.Click(filled ? "cmdOk" : "cmdCancel");
    }};
    const std::string before = window.dates.Entered();
    window.form.Click("cmdAutoFill");
    EXPECT_EQ(window.dates.Entered() == before, !filled) << "looking at the wizard changes nothing";
    const std::string none = "30/12/1899|30/12/1899";
    EXPECT_EQ(window.Dates(kRow), "05/05/2023|30/12/1899");
    EXPECT_EQ(window.Dates(1), filled ? "01/01/2024|31/01/2024" : none);
    EXPECT_EQ(window.Dates(11), none);
    EXPECT_EQ(window.form.At({"txtDate1", 1}).Dimmed, !filled);
    EXPECT_TRUE(window.form.At({"Comupd", 11}).Enabled);
  }
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
      {"he_IL", "ינואר 2013", "2013-01-01", "2013-01-31", false},
      {"en_GB", "Jan 2013", "2013-01-01", "2013-03-31", true},
      {"en_GB", "January", "2013-02-01", "2013-02-28", false},  // of which year is not said
      {"en_GB", "2013-01", "2013-02-01", "2013-02-28", true, false},
      {"en_GB", "2013 Q1", "2013-04-01", "2013-06-30", true, false},
      {"en_GB", "2013 Q1", "2013-01-01", "2013-06-30", true, false},
      {"en_GB", "2013 Q1", "2013-02-01", "2013-02-28", false, false},
      {"en_GB", "2013-07 - 2014-06", "2013-07-01", "2014-06-30", false, false},
      {"en_GB", "2013", "2013-07-01", "2014-06-30", false, false},  // a business year
      {"en_GB", "2013", "2014-07-01", "2015-06-30", true, false},
      {"en_GB", "2013-13", "2013-12-01", "2013-12-31", false},
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
  constexpr std::size_t kKept = 0, kKeepGiven = 1, kAll = 2;
  struct {
    const char *from, *until;
    const char* names[3];  ///< before or cancelled, with given names kept, and all renamed
  } const rows[] = {
      {"2013-01-01", "2013-03-31", {"2024-01", "2013 Q1", "2013 Q1"}},
      {"2013-04-01", "2013-09-30", {"", "2013-04 - 2013-09", "2013-04 - 2013-09"}},
      {"2013-02-01", "2013-03-31", {"Jan & Feb 2024", "Jan & Feb 2024", "2013-02 - 2013-03"}},
      {"2013-01-01", "2013-12-31", {"2013", "2013", "2013"}},
      {"", "2013-03-31", {"Spring", "Spring", "Spring"}},
      {"2013-03-31", "2013-01-01", {"Wrong", "Wrong", "Wrong"}}};
  const ControlId buttons[] = {"cmdCancel", {"cmdAnswer", 1}, {"cmdAnswer", 0}};
  for (const std::size_t answer : {kKept, kKeepGiven, kAll}) {
    Window window("en_GB");
    for (int row = 0; row < static_cast<int>(std::size(rows)); ++row) {
      window.form.SetText({"TextPeriod", row}, rows[row].names[kKept]);
      window.form.SetText({"txtDate1", row}, rows[row].from);
      window.form.SetText({"txtDate2", row}, rows[row].until);
    }
    window.desk.toolkit.in_window = {[&](Form& question) {
      EXPECT_EQ(question.Caption, "Rename these periods, too?");
      EXPECT_EQ(question.At({"lblRow", 0}).Caption, "Jan && Feb 2024");
      EXPECT_EQ(question.At({"lblRow", 1}).Caption, "2013-02 - 2013-03");
      EXPECT_FALSE(question.Has({"lblRow", 2}));
      question.Click(buttons[answer]);
    }};
    window.form.Click("cmdNamePeriods");
    for (int row = 0; row < static_cast<int>(std::size(rows)); ++row) {
      EXPECT_EQ(window.form.Text({"TextPeriod", row}), rows[row].names[answer]);
    }
    if (answer == kAll) window.form.Click("cmdNamePeriods");
    EXPECT_EQ(window.desk.toolkit.shown.size(), 1U) << "asked once, and then nothing more to ask";
  }
}

TEST(PeriodDates, AShownSetIsReadAgainAndLeavesNothingOfTheOneBefore) {
  Window window("de_DE"), fresh("de_DE"), copy("de_DE");
  const std::string empty = window.dates.Entered();
  PeriodSet before, after;
  before.Period(1) = {"", Date::FromCivil(2023, 1, 1), Date::FromCivil(2023, 12, 31), true};
  before.Period(7) = {"", Date::FromCivil(2023, 7, 1), Date::FromCivil(2023, 7, 31), false};
  after.Period(1) = {"März", Date::FromCivil(2024, 3, 15), Date{}, false};
  after.Period(2) = {"", Date{}, Date{}, true};
  window.dates.Show(before);
  window.dates.Show(after);
  EXPECT_EQ(window.Dates(0), "15.03.2024|");
  fresh.dates.Show(after);
  EXPECT_EQ(fresh.dates.Entered(), window.dates.Entered());
  copy.dates.Show(window.dates.Read());
  EXPECT_EQ(copy.dates.Entered(), window.dates.Entered());
  window.form.SetText({"txtDate2", 5}, "morgen");
  EXPECT_THROW(window.dates.Read(), Failure);
  EXPECT_TRUE(window.form.At({"txtDate2", 5}).Error);
  window.dates.Show(before);
  EXPECT_FALSE(window.form.At({"txtDate2", 5}).Error);
  window.form.SetText({"txtDate2", 5}, "morgen");
  window.form.Click("cmdCleanDates");
  EXPECT_EQ(window.dates.Entered(), empty);
  EXPECT_EQ(window.dates.FromDates, DateList());
  EXPECT_EQ(window.dates.UntilDates, DateList());
}

}  // namespace
}  // namespace vok
