#include "ui/period_dates.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/failure.h"
#include "tests/support/ui/window_host.h"

namespace vok {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const MessageBox kNotValid{" Not Valid date ", "", MessageIcon::kNone, MessageButtons::kOk, "", 0};
const MessageBox kInvalid{"Invalid date entered at period",
                          "VokCubeQ17",
                          MessageIcon::kCritical,
                          MessageButtons::kOk,
                          "",
                          0};

struct Window {
  explicit Window(const std::string& locale) : desk(locale), dates(desk.services, form) {
    dates.Load();
  }
  /// Types into a field of a row and leaves it.
  void Enter(const char* field, int row, const std::string& text) {
    form.SetText({field, row}, text);
    form.Leave({field, row});
  }
  std::string From(int row) const { return form.Text({"txtDate1", row}); }
  std::string Until(int row) const { return form.Text({"txtDate2", row}); }
  const std::vector<MessageBox>& boxes() const { return desk.memory.boxes.boxes; }

  test::WindowHost desk;
  Form form{"frm", "0"};
  PeriodDates dates;
};

/// What one row makes of a from and an until date that are typed and left, in this order.
struct DateCase {
  const char* what;
  const char* locale;
  bool month_start;
  bool month_end;
  const char* typed_from;
  const char* typed_until;
  const char* from;
  const char* until;
  std::vector<MessageBox> boxes = {};
  const char* focus = "";
};

TEST(PeriodDates, TypedDatesAreBroughtIntoTheFormOfTheCountryAndChecked) {
  const DateCase cases[] = {
      {"day first", "en_GB", true, true, "15/03/2024", "10/02/2025", "01/03/2024", "28/02/2025"},
      {"leap day", "en_GB", false, true, "", "10/02/2024", "", "29/02/2024"},
      {"no leap day", "en_GB", false, true, "", "10/02/2023", "", "28/02/2023"},
      {"as typed", "en_GB", false, false, "5/3/24", "6/3/24", "05/03/2024", "06/03/2024"},
      {"month first", "en_US", true, true, "3/15/2024", "4/10/2024", "3/1/2024", "4/30/2024"},
      {"month name", "en_US", false, false, "March 5, 2024", "5 Apr 2024", "3/5/2024", "4/5/2024"},
      {"iso", "sv_SE", true, true, "2024-12-15", "2024-12-15", "2024-12-01", "2024-12-31"},
      {"hebrew", "he_IL", true, true, "15 במרץ 2024", "10.4.2024", "1.3.2024", "30.4.2024"},
      {"dots", "de_DE", true, true, "15.3.24", "31.12.2024", "01.03.2024", "31.12.2024"},
      {"one day", "en_GB", false, false, "15/03/2024", "15/03/2024", "15/03/2024", "15/03/2024"},
      {"until earlier",
       "en_GB",
       false,
       false,
       "15/03/2024",
       "14/03/2024",
       "15/03/2024",
       "",
       {kInvalid},
       "txtDate2"},
      {"until earlier until its month ends", "en_GB", false, true, "15/03/2024", "14/03/2024",
       "15/03/2024", "31/03/2024"},
      {"from refused", "en_GB", false, false, "abc", "", "00:00:00", "", {}, "txtDate1"},
      {"from refused in America",
       "en_US",
       false,
       false,
       "15/15/2024",
       "",
       "12:00:00 AM",
       "",
       {},
       "txtDate1"},
      {"until refused", "en_GB", false, false, "", "30/02/2024", "", "", {}, "txtDate2"},
      {"nothing typed", "en_GB", true, true, "", "", "", ""},
  };
  for (const DateCase& c : cases) {
    SCOPED_TRACE(c.what);
    Window window(c.locale);
    window.form.SetValue("chkFromD", c.month_start ? kGrayed : kUnchecked);
    window.form.SetValue("chkUntilD", c.month_end ? kChecked : kUnchecked);
    window.Enter("txtDate1", 4, c.typed_from);
    window.Enter("txtDate2", 4, c.typed_until);
    EXPECT_EQ(window.From(4), c.from);
    EXPECT_EQ(window.Until(4), c.until);
    EXPECT_EQ(window.boxes(), c.boxes);
    EXPECT_EQ(window.form.Focus.value_or(ControlId("")).name, c.focus);
    const Locale& locale = window.desk.locale;
    EXPECT_EQ(window.dates.FromDates(5), locale.ParseDate(c.from).value_or(Date{}));
    EXPECT_EQ(window.dates.UntilDates(5), locale.ParseDate(c.until).value_or(Date{}));
    EXPECT_EQ(window.form.At({"Comupd", 4}).Enabled, *c.typed_from != '\0');
    EXPECT_EQ(window.dates.FromDates(4), Date{}) << "the neighbour";
  }
}

TEST(PeriodDates, AFromDateAfterItsUntilDateIsRefusedAndNeverNormalized) {
  Window window("en_GB");
  window.form.Click("chkFromD");
  window.Enter("txtDate2", 0, "10/02/2024");
  window.Enter("txtDate1", 0, "15/02/2024");
  EXPECT_EQ(window.From(0), "");
  EXPECT_EQ(window.dates.FromDates(1), Date{});
  window.Enter("txtDate1", 0, "5/2/2024");
  EXPECT_EQ(window.From(0), "5/2/2024") << "with both dates there it stays as typed";
  window.Enter("txtDate1", 0, "abc");
  EXPECT_EQ(window.From(0), "00:00:00");
  EXPECT_THAT(window.boxes(), ElementsAre(kNotValid));
}

TEST(PeriodDates, APeriodWithItsOpeningBalanceBeginsWithItsYear) {
  struct {
    const char* locale;
    const char* typed;
    int box;
    const char* from;
  } const cases[] = {
      {"en_GB", "15/03/2024", kChecked, "01/01/2024"}, {"en_US", "3/15/2024", kChecked, "1/1/2024"},
      {"sv_SE", "2024-03-15", kChecked, "2024-01-01"}, {"he_IL", "15.3.2024", kChecked, "1.1.2024"},
      {"en_GB", "15/03/2024", kGrayed, "15/03/2024"},  {"en_GB", "soon", kChecked, "soon"},
  };
  for (const auto& [locale, typed, box, from] : cases) {
    Window clicked(locale);
    clicked.form.SetText({"txtDate1", 11}, typed);
    clicked.form.SetValue({"CheckItraPticha", 11}, box);
    EXPECT_EQ(clicked.From(11), from) << locale << " clicked";
    Window edited(locale);
    edited.form.SetValue({"CheckItraPticha", 11}, box);
    edited.form.SetText({"txtDate1", 11}, typed);
    EXPECT_EQ(edited.From(11), from) << locale << " edited";
    EXPECT_EQ(edited.dates.FromDates(12), edited.desk.locale.ParseDate(from).value_or(Date{}));
  }
}

TEST(PeriodDates, TheUpdateCommandBringsBothDatesToTheirMonths) {
  Window window("en_GB");
  window.Enter("txtDate1", 2, "15/03/2024");
  window.Enter("txtDate2", 2, "16/03/2024");
  window.form.Click("chkFromD");
  window.form.Click("chkUntilD");
  window.form.Click({"Comupd", 2});
  EXPECT_EQ(window.From(2), "01/03/2024");
  EXPECT_EQ(window.Until(2), "31/03/2024");
}

TEST(PeriodDates, CleanDatesEmptiesAllRows) {
  Window window("en_GB");
  for (int row = 0; row < kPeriodCount; ++row) {
    window.form.SetValue({"CheckItraPticha", row}, row % 2 == 0 ? kChecked : kGrayed);
    window.form.SetText({"txtDate1", row}, "15/03/2024");
    window.form.SetText({"txtDate2", row}, row == 3 ? "no date" : "16/03/2024");
  }
  window.form.Click("cmdCleanDates");
  for (int row = 0; row < kPeriodCount; ++row) {
    EXPECT_EQ(window.From(row) + window.Until(row), "");
    EXPECT_EQ(window.form.At({"CheckItraPticha", row}).Value, kUnchecked);
  }
  EXPECT_EQ(window.dates.FromDates, DateList());
  EXPECT_EQ(window.dates.UntilDates, DateList());
}

TEST(PeriodDates, AutoFillShowsWhatTheWizardFilledAndTheRest) {
  for (const char* closing : {"cmdOk", "cmdCancel"}) {
    Window window("en_GB");
    window.Enter("txtDate1", 0, "05/05/2023");
    window.desk.toolkit.in_window = {[&](Form& wizard) {
      wizard.SetText({"txtDate", 0}, "31/1/2024");
      wizard.SetText("txtP1", "2");
      wizard.SetText("txtP2", "3");
      wizard.Click(closing);
    }};
    window.form.Click("cmdAutoFill");
    const bool filled = std::string(closing) == "cmdOk";
    EXPECT_EQ(window.From(0), "05/05/2023");
    EXPECT_EQ(window.From(1), filled ? "01/01/2024" : "30/12/1899");
    EXPECT_EQ(window.Until(2), filled ? "29/02/2024" : "30/12/1899");
    EXPECT_EQ(window.dates.UntilDates(3), filled ? Date::FromCivil(2024, 2, 29) : Date{});
    EXPECT_EQ(window.From(11), "30/12/1899");
    EXPECT_TRUE(window.form.At({"Comupd", 11}).Enabled);
    EXPECT_THAT(window.boxes(), IsEmpty());
  }
}

TEST(PeriodDates, AShownSetIsReadAgainAndLeavesNothingOfTheOneBefore) {
  Window window("de_DE");
  PeriodSet before;
  before.Period(1) = {"Jahr", Date::FromCivil(2023, 1, 1), Date::FromCivil(2023, 12, 31), true};
  before.Period(7) = {"Juli", Date::FromCivil(2023, 7, 1), Date::FromCivil(2023, 7, 31), false};
  PeriodSet after;
  after.Period(1) = {"März", Date::FromCivil(2024, 3, 15), Date{}, false};
  after.Period(2) = {"", Date{}, Date{}, true};
  window.dates.Show(before);
  window.dates.Show(after);
  EXPECT_EQ(window.From(0), "15.03.2024");
  EXPECT_EQ(window.Until(0), "");
  const PeriodSet read = window.dates.Read();
  for (int number = 1; number <= kPeriodCount; ++number) {
    EXPECT_EQ(read.Period(number).PeriodName, after.Period(number).PeriodName);
    EXPECT_EQ(read.Period(number).FromDate, after.Period(number).FromDate);
    EXPECT_EQ(read.Period(number).UntilDate, after.Period(number).UntilDate);
    EXPECT_EQ(read.Period(number).IncludeOpenBalance, after.Period(number).IncludeOpenBalance);
  }
  window.form.SetText({"txtDate2", 5}, "morgen");
  EXPECT_THROW(window.dates.Read(), Failure);
}

}  // namespace
}  // namespace vok
