#include "cube/date_names.h"

#include <charconv>
#include <optional>
#include <string_view>

#include "platform/calendar.h"
#include "platform/failure.h"
#include "platform/text.h"

namespace vok {
namespace {

constexpr std::size_t kShortYearDigits = 2;
constexpr int kFirstYearOf1900s = 30;  // of those that are written with two digits

std::optional<int> WholeNumber(std::string_view name) {
  const std::string_view digits = TrimBlanks(name);
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos) {
    return std::nullopt;
  }
  int number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return result.ec == std::errc{} ? std::optional(number) : std::nullopt;
}

std::optional<int> YearNamed(std::string_view name) {
  const auto year = WholeNumber(name);
  if (!year || TrimBlanks(name).size() > kShortYearDigits) return year;
  return *year + (*year < kFirstYearOf1900s ? 2000 : 1900);
}

std::optional<int> MonthNamed(const Locale& locale, std::string_view name) {
  const auto number = WholeNumber(name);
  return number ? number : locale.MonthNamed(name);
}

}  // namespace

Date DateFromNames(const Locale& locale, const DateNames& names, bool by_month,
                   const std::string& member, const std::string& level) {
  const auto day = by_month ? std::optional<int>(1) : WholeNumber(names.day);
  const auto month = MonthNamed(locale, names.month);
  const auto year = YearNamed(names.year);
  if (day && month && year) {
    if (const auto date = CalendarDay(*year, *month, *day)) return *date;
  }
  const std::string text = (by_month ? "" : names.day + "/") + names.month + "/" + names.year;
  throw Failure(failure_number::kTypeMismatch,
                "Type mismatch: \"" + text + "\" is not a date (member \"" + member +
                    "\" of the date level \"" + level +
                    "\"). A year is read from two or four digits, a month from its number or its "
                    "name in your language or in English, full or short, a day from its number. "
                    "Name the cube's date members so.");
}

}  // namespace vok
