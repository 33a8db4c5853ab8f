#include "providers/recordset/dates.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "platform/calendar.h"

namespace vok::recordset {
namespace {

constexpr int kSecondsPerDay = 24 * 60 * 60;

/// Cuts three numbers off the text, `separator` between them; all but the first have two digits.
std::optional<std::array<int, 3>> TakeThree(std::string_view& text, char separator,
                                            std::size_t first_digits) {
  std::array<int, 3> numbers{};
  for (std::size_t index = 0; index < numbers.size(); ++index) {
    const std::size_t digits = index == 0 ? first_digits : 2;
    if (index > 0) {
      if (text.empty() || text[0] != separator) return std::nullopt;
      text.remove_prefix(1);
    }
    if (text.size() < digits || text.find_first_not_of("0123456789") < digits) return std::nullopt;
    std::from_chars(text.data(), text.data() + digits, numbers[index]);
    text.remove_prefix(digits);
  }
  return numbers;
}

std::optional<Date> ParseTime(std::string_view text) {
  const auto time = TakeThree(text, ':', 2);
  if (!time) return std::nullopt;
  if (text.starts_with('.'))
    text.remove_prefix(std::min(text.find_first_not_of("0123456789", 1), text.size()));
  if (!text.empty()) return std::nullopt;
  return TimeOf((*time)[0], (*time)[1], (*time)[2]);
}

}  // namespace

std::optional<Date> TimeOf(int hour, int minute, int second) {
  if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) {
    return std::nullopt;
  }
  return Date{(hour * 3600 + minute * 60 + second) / static_cast<double>(kSecondsPerDay)};
}

std::optional<Date> ParseIsoDate(std::string_view text) {
  if (text.find(':') == 2) return ParseTime(text);
  const auto numbers = TakeThree(text, '-', 4);
  if (!numbers) return std::nullopt;
  auto date = CalendarDay((*numbers)[0], (*numbers)[1], (*numbers)[2]);
  if (!date || text.empty()) return date;
  if (text[0] != 'T' && text[0] != ' ') return std::nullopt;
  const auto time = ParseTime(text.substr(1));
  if (!time) return std::nullopt;
  return Date{date->serial + time->serial};
}

std::string IsoText(Date date) {
  constexpr double kLastSecond = double{kPastDays} * kSecondsPerDay - 1;  // of the year 9999
  const double rounded =
      std::min(std::round(date.serial * kSecondsPerDay), kLastSecond) / kSecondsPerDay;
  const Date day{std::floor(rounded)};
  const int seconds = static_cast<int>(std::lround((rounded - day.serial) * kSecondsPerDay));
  std::array<char, 80> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d", day.Year(), day.Month(),
                day.Day(), seconds / 3600, seconds / 60 % 60, seconds % 60);
  return text.data();
}

}  // namespace vok::recordset
