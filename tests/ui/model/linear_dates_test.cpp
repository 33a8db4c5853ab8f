#include "settings/linear_dates.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/failure.h"
#include "providers/recordset/dates.h"
#include "tests/support/ui/window_host.h"
#include "ui/model/frm_liniar_dates.h"

namespace vok {
namespace {

using testing::HasSubstr;

/// The zero date of an empty text.
Date Day(const char* iso) { return recordset::ParseIsoDate(iso).value_or(Date{}); }

std::string Iso(Date date) { return recordset::IsoText(date).substr(0, 10); }

/// The first and the last of the periods that are filled.
std::string Ends(const DateList& from, const DateList& until) {
  std::vector<std::string> filled;
  for (int number = 1; number <= kPeriodCount; ++number) {
    if (from(number).IsZero()) continue;
    filled.push_back(std::to_string(number) + ": " + Iso(from(number)) + " " + Iso(until(number)));
  }
  return filled.front() + ", " + filled.back();
}

TEST(LinearDates, RunsGoForwardsFromAStartAndBackwardsFromAnEnd) {
  struct {
    int interval;
    const char *anchor, *end;
    int16_t first, last;
    const char *today, *ends;
  } const cases[] = {
      {kMonths, "", "", 0, 0, "2024-01-31", "1: 2023-01-01 2023-01-31, 12: 2023-12-01 2023-12-31"},
      {kYears, "", "", 1, 12, "2024-05-15", "1: 2012-01-01 2012-12-31, 12: 2023-01-01 2023-12-31"},
      {kQuarters, "", "", 0, 0, "2024-05-15",
       "1: 2021-04-01 2021-06-30, 12: 2024-01-01 2024-03-31"},
      {kQuarters, "", "", 0, 0, "2024-06-30",
       "1: 2021-07-01 2021-09-30, 12: 2024-04-01 2024-06-30"},
      {kHalfYears, "", "", 0, 0, "2024-01-31",
       "1: 2018-01-01 2018-06-30, 12: 2023-07-01 2023-12-31"},
      {kHalfYears, "", "", 2, 3, "2024-12-01",
       "2: 2024-01-01 2024-06-30, 3: 2024-07-01 2024-12-31"},
      {kMonths, "2024-01-31", "", 1, 2, "", "1: 2024-01-01 2024-01-31, 2: 2024-02-01 2024-02-29"},
      {kMonths, "2024-03-15", "2024-03-14", 1, 3, "",
       "1: 2024-03-01 2024-03-31, 3: 2024-01-01 2024-01-31"},
      {7, "2024-03-15", "2024-03-15", 1, 3, "",
       "1: 2024-03-01 2024-03-31, 3: 2024-05-01 2024-05-31"},
      {kYears, "", "2024-08-10", 1, 3, "", "1: 2021-09-01 2022-08-31, 3: 2023-09-01 2024-08-31"},
      {kHalfYears, "2024-11-05", "", 12, 11, "",
       "11: 2025-05-01 2025-10-31, 12: 2024-11-01 2025-04-30"},
  };
  for (const char* name : {"en_GB", "en_US", "sv_SE", "he_IL"}) {
    const IcuLocale locale(name);
    for (const auto& c : cases) {
      DateList from, until;
      FillLinearDates({c.interval, Day(c.anchor), Day(c.end), c.first, c.last, Day(c.today)},
                      locale, from, until);
      EXPECT_EQ(Ends(from, until), c.ends) << name;
    }
  }
  DateList from, until;
  const LinearDates beyond{kMonths, Day("2024-01-01"), {}, 12, 13, {}};
  EXPECT_THROW(FillLinearDates(beyond, IcuLocale("en_GB"), from, until), Failure);
  EXPECT_EQ(until(12), Day("2024-01-31")) << "what was filled before the failure stays";
}

TEST(LinearDatesWizard, PeriodNumbersAreTakenOrErased) {
  struct {
    const char *typed, *left;
    int first;
  } const cases[] = {{"1", "1", 1},       {"12", "12", 12}, {"13", "", 1},      {"0", "", 1},
                     {"-1", "", 1},       {"3x", "", 1},    {"2.4", "2.4", 2},  {"0.4", "0.4", 1},
                     {" 7 ", " 7 ", 7},   {"nan", "", 1},   {"1e1", "1e1", 10}, {"", "", 1},
                     {"11.5", "11.5", 12}};
  for (const auto& [typed, left, first] : cases) {
    test::WindowHost desk("en_GB");
    frmLiniarDates wizard(desk.services);
    desk.toolkit.in_window = {[&](Form& form) {
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
    for (int before = 1; before < first; ++before) EXPECT_TRUE(wizard.FromDateArr(before).IsZero());
  }
}

TEST(LinearDatesWizard, TheChosenIntervalRunsUpToToday) {
  struct {
    int position;
    const char* ends;
  } const cases[] = {{0, "1: 2023-05-01 2023-05-31, 12: 2024-04-01 2024-04-30"},
                     {1, "1: 2021-04-01 2021-06-30, 12: 2024-01-01 2024-03-31"},
                     {2, "1: 2018-01-01 2018-06-30, 12: 2023-07-01 2023-12-31"},
                     {3, "1: 2012-01-01 2012-12-31, 12: 2023-01-01 2023-12-31"}};
  for (const auto& [position, ends] : cases) {
    test::WindowHost desk("en_GB");
    desk.memory.clock.now = Day("2024-05-15");
    frmLiniarDates wizard(desk.services);
    desk.toolkit.in_window = {[at = position](Form& form) {
      EXPECT_EQ(form.At("lstInterval").ListIndex, 0);
      form.Choose("lstInterval", at);
      form.Click("cmdOk");
    }};
    EXPECT_TRUE(wizard.ShowForm());
    EXPECT_EQ(Ends(wizard.FromDateArr, wizard.UntilDateArr), ends);
  }
}

TEST(LinearDatesWizard, CancelFillsNothingAndANumberBeyondTheRowsIsReported) {
  test::WindowHost desk("en_GB");
  frmLiniarDates wizard(desk.services);
  desk.toolkit.in_window = {[](Form& form) { form.Click("cmdCancel"); },
                            [](Form& form) {
                              form.SetText({"txtDate", 1}, "no date");
                              form.SetText("txtP2", "12.6");
                              form.Choose("lstInterval", 3);
                              form.Click("cmdOk");
                            }};
  EXPECT_FALSE(wizard.ShowForm());
  EXPECT_EQ(wizard.FromDateArr, DateList());
  wizard.ShowForm();
  ASSERT_EQ(desk.memory.boxes.boxes.size(), 1U);
  EXPECT_THAT(desk.memory.boxes.boxes[0].text,
              testing::AllOf(HasSubstr("Error : 9\r\n"),
                             HasSubstr("Function : cmdOk_Click\r\nModule : frmLiniarDates")));
}

}  // namespace
}  // namespace vok
