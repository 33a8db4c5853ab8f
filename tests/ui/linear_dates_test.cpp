#include "ui/linear_dates.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/failure.h"
#include "tests/support/ui/window_host.h"
#include "ui/frm_liniar_dates.h"

namespace vok {
namespace {

Date Day(const char* iso) {
  const int year = std::stoi(iso);
  return *iso == '\0' ? Date{} : Date::FromCivil(year, std::stoi(iso + 5), std::stoi(iso + 8));
}

/// What the first and last of the periods become.
struct FillCase {
  int interval;
  const char* anchor;
  const char* end;
  int16_t first, last;
  const char* today;
  int number;
  const char *from, *until;
  int other;
  const char *other_from, *other_until;
};

TEST(LinearDates, RunsGoForwardsFromAStartAndBackwardsFromAnEnd) {
  const FillCase cases[] = {
      {kMonths, "0", "0", 0, 0, "2024-05-15", 12, "2024-04-01", "2024-04-30", 1, "2023-05-01",
       "2023-05-31"},
      {kYears, "0", "0", 1, 12, "2024-05-15", 12, "2023-01-01", "2023-12-31", 1, "2012-01-01",
       "2012-12-31"},
      {kQuarters, "0", "0", 0, 0, "2024-05-15", 12, "2024-01-01", "2024-03-31", 11, "2023-10-01",
       "2023-12-31"},
      {kQuarters, "0", "0", 0, 0, "2024-06-30", 12, "2024-04-01", "2024-06-30", 1, "2021-07-01",
       "2021-09-30"},
      {kHalfYears, "0", "0", 0, 0, "2024-01-31", 12, "2023-07-01", "2023-12-31", 11, "2023-01-01",
       "2023-06-30"},
      {kHalfYears, "0", "0", 2, 3, "2024-12-01", 3, "2024-07-01", "2024-12-31", 2, "2024-01-01",
       "2024-06-30"},
      {kMonths, "0", "0", 0, 0, "2024-01-31", 12, "2023-12-01", "2023-12-31", 2, "2023-02-01",
       "2023-02-28"},
      {7, "0", "0", 0, 0, "2024-05-15", 12, "2024-04-01", "2024-04-30", 11, "2024-03-01",
       "2024-03-31"},
      {kQuarters, "2024-01-01", "0", 1, 4, "2020-01-01", 1, "2024-01-01", "2024-03-31", 4,
       "2024-10-01", "2024-12-31"},
      {kMonths, "2024-01-31", "0", 1, 3, "2020-01-01", 2, "2024-02-01", "2024-02-29", 3,
       "2024-03-01", "2024-03-31"},
      {kMonths, "2024-03-15", "2024-03-14", 1, 3, "2020-01-01", 1, "2024-03-01", "2024-03-31", 3,
       "2024-01-01", "2024-01-31"},
      {kMonths, "2024-03-15", "2024-03-15", 1, 3, "2020-01-01", 1, "2024-03-01", "2024-03-31", 3,
       "2024-05-01", "2024-05-31"},
      {kYears, "0", "2024-08-10", 1, 3, "2020-01-01", 3, "2023-09-01", "2024-08-31", 1,
       "2021-09-01", "2022-08-31"},
      {kHalfYears, "2024-11-05", "0", 12, 11, "2020-01-01", 12, "2024-11-01", "2025-04-30", 11,
       "2025-05-01", "2025-10-31"},
      {kMonths, "2024-01-01", "0", 12, 1, "2020-01-01", 12, "2024-01-01", "2024-01-31", 1,
       "2024-12-01", "2024-12-31"},
  };
  const auto day = [](const char* text) { return *text == '0' ? Date{} : Day(text); };
  for (const char* name : {"en_GB", "en_US", "sv_SE", "he_IL"}) {
    const IcuLocale locale(name);
    for (const FillCase& c : cases) {
      DateList from, until;
      FillLinearDates({c.interval, day(c.anchor), day(c.end), c.first, c.last, Day(c.today)},
                      locale, from, until);
      const std::string what = std::string(name) + " " + c.from;
      EXPECT_EQ(from(c.number), Day(c.from)) << what;
      EXPECT_EQ(until(c.number), Day(c.until)) << what;
      EXPECT_EQ(from(c.other), Day(c.other_from)) << what;
      EXPECT_EQ(until(c.other), Day(c.other_until)) << what;
      int filled = 0;
      for (int number = 1; number <= kPeriodCount; ++number)
        filled += from(number).IsZero() ? 0 : 1;
      const bool all = c.first == 0 || c.last == 0;
      EXPECT_EQ(filled, all ? 12 : std::abs(c.last - c.first) + 1) << what;
    }
  }
  DateList from, until;
  const LinearDates beyond{kMonths, Day("2024-01-01"), {}, 12, 13, {}};
  EXPECT_THROW(FillLinearDates(beyond, IcuLocale("en_GB"), from, until), Failure);
  EXPECT_EQ(until(12), Day("2024-01-31")) << "what was filled before the failure stays";
}

TEST(LinearDatesWizard, PeriodNumbersAreTakenOrErased) {
  struct {
    const char* typed;
    const char* left;
    int first;
  } const cases[] = {{"1", "1", 1},     {"12", "12", 12},    {"13", "", 1},  {"0", "", 1},
                     {"-1", "", 1},     {"abc", "", 1},      {"3x", "", 1},  {"2.4", "2.4", 2},
                     {"0.4", "0.4", 1}, {" 7 ", " 7 ", 7},   {"nan", "", 1}, {"1e1", "1e1", 10},
                     {"", "", 1},       {"11.5", "11.5", 12}};
  for (const auto& [typed, left, first] : cases) {
    test::WindowHost desk("en_GB");
    frmLiniarDates wizard(desk.services);
    desk.toolkit.in_window = {[&](Form& form) {
      EXPECT_EQ(form.Text("lstInterval"), "Month");
      EXPECT_THAT(form.At("lstInterval").List,
                  testing::ElementsAre("Month", "Quater", "Half Year", "Year"));
      form.SetText({"txtDate", 0}, "31/1/2024");
      form.SetText("txtP1", "5");
      form.SetText("txtP1", typed);
      EXPECT_EQ(form.Text("txtP1"), left) << typed;
      form.Click("cmdOk");
      EXPECT_FALSE(form.Visible);
    }};
    EXPECT_TRUE(wizard.ShowForm());
    EXPECT_EQ(wizard.FromDateArr(first), Day("2024-01-01")) << typed;
    if (first > 1) {
      EXPECT_EQ(wizard.FromDateArr(first - 1), Date{}) << typed;
    }
  }
}

TEST(LinearDatesWizard, CancelFillsNothingAndANumberBeyondTheRowsIsReported) {
  test::WindowHost desk("en_GB");
  frmLiniarDates cancelled(desk.services);
  desk.toolkit.in_window = {[](Form& form) { form.Click("cmdCancel"); }};
  EXPECT_FALSE(cancelled.ShowForm());
  EXPECT_EQ(cancelled.FromDateArr, DateList());
  frmLiniarDates closed(desk.services);
  EXPECT_FALSE(closed.ShowForm());

  frmLiniarDates wizard(desk.services);
  desk.toolkit.in_window = {[](Form& form) {
    form.SetText({"txtDate", 1}, "no date");
    form.SetText("txtP2", "12.6");
    form.Choose("lstInterval", 3);
    form.Click("cmdOk");
  }};
  wizard.ShowForm();
  ASSERT_EQ(desk.memory.boxes.boxes.size(), 1U);
  EXPECT_THAT(
      desk.memory.boxes.boxes[0].text,
      testing::AllOf(testing::HasSubstr("Error : 9\r\n"),
                     testing::HasSubstr("Function : cmdOk_Click\r\nModule : frmLiniarDates")));
}

}  // namespace
}  // namespace vok
