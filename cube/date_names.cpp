#include "cube/date_names.h"

#include <charconv>
#include <optional>
#include <string_view>

#include "platform/failure.h"
#include "platform/text.h"

namespace vok {
namespace {

// A year below is one that was shortened: which century it means is for the locale to say.
constexpr int kFirstFullYear = 100;
constexpr int kLastYear = 9999;

std::optional<int> WholeNumber(std::string_view text) {
  const std::string_view digits = TrimBlanks(text);
  int number = 0;
  const char* end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, number);
  if (result.ec != std::errc{} || result.ptr != end) return std::nullopt;
  return number;
}

std::optional<Date> CalendarDate(int year, int month, int day) {
  const bool in_range = year >= kFirstFullYear && year <= kLastYear && month >= 1 && month <= 12 &&
                        day >= 1 && day <= 31;
  if (!in_range) return std::nullopt;
  const Date date = Date::FromCivil(year, month, day);
  if (date.Day() != day) return std::nullopt;  // such as 31 April, which the constructor carries on
  return date;
}

std::optional<Date> NumericDate(const DateNames& names, bool by_month) {
  const auto day = by_month ? std::optional<int>(1) : WholeNumber(names.day);
  const auto month = WholeNumber(names.month);
  const auto year = WholeNumber(names.year);
  if (!day || !month || !year) return std::nullopt;
  return CalendarDate(*year, *month, *day);
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
