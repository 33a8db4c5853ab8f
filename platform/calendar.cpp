#include "platform/calendar.h"

namespace vok {

bool IsInCalendar(Date date) { return date.serial >= kFirstDay && date.serial < kPastDays; }

std::optional<Date> CalendarDay(int year, int month, int day) {
  if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) {
    return std::nullopt;
  }
  const Date date = Date::FromCivil(year, month, day);
  if (date.Day() != day) return std::nullopt;  // carried on into the next month
  return date;
}

}  // namespace vok
