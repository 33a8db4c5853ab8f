// Reads dates as people type them in their country.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "platform/date.h"
#include "platform/locale.h"

namespace vok {

/// A country's way with dates. Words are case folded and hold letters only.
struct DateCustoms {
  enum class Order { kDayMonthYear, kMonthDayYear, kYearMonthDay };

  Order order = Order::kYearMonthDay;  ///< of numbers alone
  MonthNames months;
  std::set<std::string> fillers;  ///< weekdays, and words that long dates are written with
  std::string morning;            ///< "am"
  std::string afternoon;          ///< "pm"
};

/// The date that the case-folded text means; nothing when it means none.
///
/// Day, month and year in the country's order, apart by a blank or one of "/", "." and "-"; a first
/// number of four digits is a year, in every order. Two digits of a year mean 1930 to 2029. A
/// month's name, or three letters that no other month begins with, may stand for its number. ISO
/// 8601 dates are dates everywhere. A time (hours:minutes[:seconds] with or without a half of the
/// day) may follow, or stand alone on the zero date.
std::optional<Date> ReadDate(const DateCustoms& customs, std::string_view folded);

/// The letters of the text, all else left out.
std::string LettersOf(std::string_view text);

}  // namespace vok
