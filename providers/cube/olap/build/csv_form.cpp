#include "providers/cube/olap/build/csv_form.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "platform/calendar.h"
#include "platform/failure.h"

namespace vok::olap {
namespace {

[[noreturn]] void Refuse(const std::string& what, const std::string& text, const char* known) {
  throw Failure(failure_number::kInvalidCall,
                "The " + what + " \"" + text + "\" is not known; give " + known);
}

constexpr std::array<std::string_view, 6> kDateFields = {"d", "dd", "m", "mm", "yy", "yyyy"};

bool IsAsciiDigit(char letter) { return letter >= '0' && letter <= '9'; }

/// Takes the digits of a field of `width` letters off the text: that many, or one or two for a
/// width of one. -1 when there are none.
int TakeNumber(std::string_view& text, std::size_t width) {
  const std::size_t most = width == 1 ? 2 : width;
  std::size_t digits = 0;
  int number = 0;
  while (digits < std::min(most, text.size()) && IsAsciiDigit(text[digits])) {
    number = number * 10 + (text[digits++] - '0');
  }
  if (digits == 0 || (width > 1 && digits < width)) return -1;
  text.remove_prefix(digits);
  return number;
}

/// Day, month and year once each, in letters whose number says how many digits they have.
bool IsDateForm(std::string_view form) {
  std::string fields;
  while (!form.empty()) {
    const std::size_t width = std::min(form.find_first_not_of(form[0]), form.size());
    const std::string_view field = form.substr(0, width);
    form.remove_prefix(width);
    if (std::string_view(".-/ ").find(field[0]) != std::string_view::npos) continue;
    if (std::ranges::find(kDateFields, field) == kDateFields.end()) return false;
    fields += field[0];
  }
  std::ranges::sort(fields);
  return fields == "dmy";
}

/// Blanks and marks that part groups of digits: ".", "'", a blank, and those that do not break.
std::size_t GroupMark(std::string_view text) {
  for (const std::string_view mark : {".", "'", " ", "\u00A0", "\u202F", "\u2019"}) {
    if (text.starts_with(mark)) return mark.size();
  }
  return 0;
}

}  // namespace

void SetForm(CsvForm& form, const std::string& separator, const std::string& decimal,
             const std::string& dates) {
  if (separator == "tab" || separator == "\\t") {
    form.separator = '\t';
  } else if (separator.size() == 1 &&
             std::string_view(",;|\t").find(separator) != std::string_view::npos) {
    form.separator = separator[0];
  } else if (!separator.empty()) {
    Refuse("separator", separator, "one of , ; | tab");
  }
  if (decimal == "." || decimal == ",") {
    form.decimal = decimal[0];
  } else if (!decimal.empty()) {
    Refuse("decimal mark", decimal, ". or ,");
  }
  if (!dates.empty() && !IsDateForm(dates)) {
    Refuse("form of dates", dates,
           "days, months and years as d or dd, m or mm, yy or yyyy, such as dd.mm.yyyy");
  }
  if (!dates.empty()) form.dates = dates;
}

std::optional<std::string> IsoDateIn(std::string_view form, std::string_view text) {
  int day = -1;
  int month = -1;
  int year = -1;
  while (!form.empty()) {
    const char letter = form.front();
    const std::size_t width = std::min(form.find_first_not_of(letter), form.size());
    form.remove_prefix(width);
    if (letter == 'd') day = TakeNumber(text, width);
    if (letter == 'm') month = TakeNumber(text, width);
    if (letter == 'y') {
      year = TakeNumber(text, width);
      if (width == 2 && year >= 0) year = YearOfTwoDigits(year);
    }
    if (letter != 'd' && letter != 'm' && letter != 'y') {
      if (!text.starts_with(std::string(width, letter))) return std::nullopt;
      text.remove_prefix(width);
    }
  }
  if (!text.empty() || !CalendarDay(year, month, day)) return std::nullopt;
  std::array<char, 40> iso{};
  std::snprintf(iso.data(), iso.size(), "%04d-%02d-%02d", year, month, day);
  return iso.data();
}

std::string WithPoint(std::string_view text) {
  constexpr std::size_t kGroup = 3;
  std::string number;
  std::size_t digits = 0;  // since the beginning or the last mark
  bool grouped = false;
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
    number = text[0];
    text.remove_prefix(1);
  }
  while (!text.empty() && text[0] != ',') {
    const std::size_t mark = GroupMark(text);
    if (mark == 0 && !IsAsciiDigit(text[0])) return {};
    if (mark == 0) {
      number += text[0];
      ++digits;
    } else {
      if (digits == 0 || digits > kGroup || (grouped && digits != kGroup)) return {};
      grouped = true;
      digits = 0;
    }
    text.remove_prefix(std::max<std::size_t>(mark, 1));
  }
  if (grouped && digits != kGroup) return {};
  return text.empty() ? number : number + "." + std::string(text.substr(1));
}

}  // namespace vok::olap
