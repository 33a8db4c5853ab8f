#include "cli/print.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <span>
#include <sstream>

#include "platform/calendar.h"
#include "platform/shown_text.h"
#include "platform/utf8.h"

namespace vok::cli {
namespace {

struct Range {
  char32_t first, last;
};

constexpr std::array<Range, 12> kMarks = {{{0x300, 0x36F},
                                           {0x483, 0x489},
                                           {0x591, 0x5BD},
                                           {0x5BF, 0x5BF},
                                           {0x5C1, 0x5C2},
                                           {0x5C4, 0x5C5},
                                           {0x5C7, 0x5C7},
                                           {0x610, 0x61A},
                                           {0x64B, 0x65F},
                                           {0x200B, 0x200F},
                                           {0x20D0, 0x20F0},
                                           {0xFE00, 0xFE0F}}};
constexpr std::array<Range, 8> kWide = {{{0x1100, 0x115F},
                                         {0x2E80, 0xA4CF},
                                         {0xAC00, 0xD7A3},
                                         {0xF900, 0xFAFF},
                                         {0xFE30, 0xFE6F},
                                         {0xFF00, 0xFF60},
                                         {0x1F300, 0x1FAFF},
                                         {0x20000, 0x3FFFD}}};

bool IsIn(std::span<const Range> ranges, char32_t letter) {
  return std::any_of(ranges.begin(), ranges.end(), [letter](const Range& range) {
    return letter >= range.first && letter <= range.last;
  });
}

}  // namespace

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

std::string JsonText(const Json& document) {
  std::istringstream lines(document.dump(2, ' ', false, Json::error_handler_t::replace));
  std::string text;
  for (std::string line; std::getline(lines, line);) text += OneLine(line) + '\n';
  return text;
}

std::string ShownText(const Json& text) { return OneLine(text.get<std::string>()); }

std::size_t CellWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const char32_t letter = TakeLetter(text).code;
    width += IsIn(kMarks, letter) ? 0 : IsIn(kWide, letter) ? 2 : 1;
  }
  return width;
}

}  // namespace vok::cli
