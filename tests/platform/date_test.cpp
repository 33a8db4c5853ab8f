#include "platform/date.h"

#include <gtest/gtest.h>

namespace vok {
namespace {

TEST(Date, ConstructorNormalisesMonthsAndDays) {
  const struct {
    int year, month, day;
    double serial;
    int shown_year, shown_month, shown_day;
  } cases[] = {
      {1899, 12, 30, 0, 1899, 12, 30},    {1900, 1, 1, 2, 1900, 1, 1},
      {2024, 2, 29, 45351, 2024, 2, 29},  {2023, 3, 0, 44985, 2023, 2, 28},
      {2023, 13, 1, 45292, 2024, 1, 1},   {2024, 0, 1, 45261, 2023, 12, 1},
      {2024, -10, 31, 44988, 2023, 3, 3}, {1899, 12, 29, -1, 1899, 12, 29},
      {2024, 14, 0, 45688, 2025, 1, 31},
  };
  for (const auto& c : cases) {
    const Date date = Date::FromCivil(c.year, c.month, c.day);
    EXPECT_EQ(date.serial, c.serial) << c.year << '/' << c.month << '/' << c.day;
    EXPECT_EQ(date.Year(), c.shown_year);
    EXPECT_EQ(date.Month(), c.shown_month);
    EXPECT_EQ(date.Day(), c.shown_day);
  }
}

TEST(Date, TimeOfDayDoesNotChangeTheDay) {
  const Date evening{45351.99};
  EXPECT_EQ(evening.DayOnly(), Date{45351});
  EXPECT_EQ(evening.Day(), 29);
  EXPECT_EQ(Date{-0.25}.DayOnly(), Date{-1});
}

}  // namespace
}  // namespace vok
