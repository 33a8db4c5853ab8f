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

TEST(LinearDatesWizard, FillsRunsForwardsFromAStartAndBackwardsFromAnEnd) {
  struct {
    int interval;
    const char *start, *end, *today, *first, *shown, *last, *ends;
  } const cases[] = {
      {0, "2024-01-31", "", "", "1", "1", "2",
       "1: 2024-01-01 2024-01-31, 2: 2024-02-01 2024-02-29"},
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
      test::WindowHost desk(country);
      desk.memory.clock.now = Day(c.today);
      frmLiniarDates wizard(desk.services);
      desk.toolkit.in_window = {[&](Form& form) {
        EXPECT_EQ(form.At("lstInterval").ListIndex, 0);
        form.Choose("lstInterval", c.interval);
        form.SetText({"txtDate", 0}, c.start);
        form.SetText({"txtDate", 1}, c.end);
        form.SetText("txtP1", "5");
        form.SetText("txtP1", c.first);
        form.SetText("txtP2", c.last);
        EXPECT_EQ(form.Text("txtP1"), c.shown);
        form.Click("cmdOk");
      }};
      EXPECT_TRUE(wizard.ShowForm());
      EXPECT_EQ(Ends(wizard.FromDateArr, wizard.UntilDateArr), c.ends);
    }
  }
}

TEST(LinearDatesWizard, ANumberBeyondTheRowsIsReported) {
  test::WindowHost desk("en_GB");
  frmLiniarDates wizard(desk.services);
  desk.toolkit.in_window = {[](Form& form) {
    form.SetText("txtP2", "12.6");
    form.Click("cmdOk");
  }};
  wizard.ShowForm();
  ASSERT_EQ(desk.memory.boxes.boxes.size(), 1U);
  EXPECT_THAT(desk.memory.boxes.boxes[0].text,
              testing::AllOf(HasSubstr("Error : 9\r\n"),
                             HasSubstr("Function : cmdOk_Click\r\nModule : frmLiniarDates")));
}

}  // namespace
}  // namespace vok
