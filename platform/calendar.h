// The days that dates can be, wherever they come from, 1 January 100 to 31 December 9999, and the
// clock that tells today's.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/date.h"

namespace vok {

/// Serials: the first date, and the first day past the last one.
inline constexpr int32_t kFirstDay = -657434;
inline constexpr int32_t kPastDays = 2958466;

/// Times of day included; false for what is not a number.
bool IsInCalendar(Date date);

/// Nothing for a day that no calendar has, such as 31 April, and for other years.
std::optional<Date> CalendarDay(int year, int month, int day);

/// The year that two digits stand for: 30 to 99 are of the 1900s, 0 to 29 of the 2000s.
constexpr int YearOfTwoDigits(int year) { return year + (year < 30 ? 2000 : 1900); }

class Clock {
 public:
  virtual ~Clock() = default;
  /// The system's millisecond clock; it wraps.
  virtual uint32_t Milliseconds() const = 0;
  /// Local date and time.
  virtual Date Now() const = 0;
};

}  // namespace vok
