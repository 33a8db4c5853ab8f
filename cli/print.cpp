#include "cli/print.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "platform/calendar.h"

namespace vok::cli {

std::string IsoDate(Date date) {
  if (date.IsZero()) return {};
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", date.Year(), date.Month(), date.Day());
  return text.data();
}

std::string IsoDateTime(Date date) {
  constexpr int kSecondsPerDay = 24 * 60 * 60;
  const double rounded = std::round(date.serial * kSecondsPerDay) / kSecondsPerDay;
  const double day = std::floor(rounded);
  const int seconds = static_cast<int>(std::lround((rounded - day) * kSecondsPerDay));
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "T%02d:%02d:%02d", seconds / 3600, seconds / 60 % 60,
                seconds % 60);
  return IsoDate(Date{day}) + text.data();
}

std::optional<Date> ParseIsoDate(std::string_view text) {
  if (text.size() != 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
  const auto number = [&](std::size_t at, std::size_t length) {
    int value = -1;
    const char* end = text.data() + at + length;
    const auto result = std::from_chars(text.data() + at, end, value);
    return result.ptr == end ? value : -1;
  };
  return CalendarDay(number(0, 4), number(5, 2), number(8, 2));
}

std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

}  // namespace vok::cli
