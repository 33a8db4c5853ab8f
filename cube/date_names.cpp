#include "cube/date_names.h"

#include <charconv>
#include <optional>
#include <string_view>

#include "platform/calendar.h"
#include "platform/failure.h"
#include "platform/text.h"

namespace vok {
namespace {

std::optional<int> WholeNumber(std::string_view text) {
  const std::string_view digits = TrimBlanks(text);
  int number = 0;
  const char* end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, number);
  if (result.ec != std::errc{} || result.ptr != end) return std::nullopt;
  return number;
}

/// A year below 100 was shortened: which century it means is for the locale to say.
std::optional<Date> NumericDate(const DateNames& names, bool by_month) {
  const auto day = by_month ? std::optional<int>(1) : WholeNumber(names.day);
  const auto month = WholeNumber(names.month);
  const auto year = WholeNumber(names.year);
  if (!day || !month || !year) return std::nullopt;
  return CalendarDay(*year, *month, *day);
}

}  // namespace

Date DateFromNames(const Locale& locale, const DateNames& names, bool by_month,
                   const std::string& member, const std::string& level) {
  if (const auto date = NumericDate(names, by_month)) return *date;
  const std::string text =
      by_month ? names.month + "/" + names.year : names.day + "/" + names.month + "/" + names.year;
  const auto date = locale.ParseDate(text);
  if (!date) {
    throw Failure(failure_number::kTypeMismatch,
                  "Type mismatch: \"" + text + "\" is no date (member \"" + member +
                      "\" of the date level \"" + level +
                      "\"); the cube's date members must be named by numbers of the calendar");
  }
  return by_month ? Date::FromCivil(date->Year(), date->Month(), 1) : date->DayOnly();
}

}  // namespace vok
