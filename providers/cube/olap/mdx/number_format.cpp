#include "providers/cube/olap/mdx/number_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>
#include <vector>

namespace vok::olap {
namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 6> kNamedFormats = {
    {{"Standard", "#,##0.00"},
     {"Fixed", "0.00"},
     {"Percent", "0.00%"},
     {"Currency", "#,##0.00"},
     {"General Number", ""},
     {"General", ""}}};

/// A number without sign as decimal digits: 0.digits * 10^point.
struct Decimal {
  std::string digits;
  int point = 0;
};

Decimal Shortest(double number) {
  char buffer[40];
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::scientific).ptr;
  const std::string_view text(buffer, static_cast<std::size_t>(end - buffer));
  const std::size_t e = text.find('e');
  Decimal decimal;
  for (const char c : text.substr(0, e)) {
    if (c != '.') decimal.digits += c;
  }
  std::string_view exponent = text.substr(e + 1);
  if (exponent.starts_with('+')) exponent.remove_prefix(1);
  std::from_chars(exponent.data(), exponent.data() + exponent.size(), decimal.point);
  ++decimal.point;
  return decimal;
}

/// Keeps `places` digits after the point; halves go up.
void Round(Decimal& decimal, int places) {
  const int kept = decimal.point + places;
  if (kept >= static_cast<int>(decimal.digits.size())) return;
  const bool up = kept >= 0 && decimal.digits[static_cast<std::size_t>(kept)] >= '5';
  decimal.digits.resize(static_cast<std::size_t>(std::max(kept, 0)));
  if (!up) return;
  std::size_t i = decimal.digits.size();
  while (i > 0 && decimal.digits[i - 1] == '9') decimal.digits[--i] = '0';
  if (i > 0) {
    ++decimal.digits[i - 1];
  } else {
    decimal.digits.insert(decimal.digits.begin(), '1');
    ++decimal.point;
  }
}

char DigitAt(const Decimal& decimal, int index) {
  return index >= 0 && index < static_cast<int>(decimal.digits.size())
             ? decimal.digits[static_cast<std::size_t>(index)]
             : '0';
}

std::string WholePart(const Decimal& decimal, int least_digits, bool grouped) {
  std::string whole;
  for (int i = 0; i < decimal.point; ++i) whole += DigitAt(decimal, i);
  whole.erase(0, whole.find_first_not_of('0') == std::string::npos ? whole.size()
                                                                   : whole.find_first_not_of('0'));
  while (static_cast<int>(whole.size()) < least_digits) whole.insert(whole.begin(), '0');
  if (grouped) {
    for (int i = static_cast<int>(whole.size()) - 3; i > 0; i -= 3) {
      whole.insert(static_cast<std::size_t>(i), 1, ',');
    }
  }
  return whole;
}

std::string Fraction(const Decimal& decimal, int least_digits, int most_digits) {
  std::string fraction;
  for (int i = 0; i < most_digits; ++i) fraction += DigitAt(decimal, decimal.point + i);
  while (static_cast<int>(fraction.size()) > least_digits && fraction.back() == '0') {
    fraction.pop_back();
  }
  return fraction;
}

/// One section of a format, taken apart.
struct Section {
  std::string prefix;
  std::string suffix;
  int whole_digits = 0;
  int least_places = 0;
  int most_places = 0;
  bool grouped = false;
  bool percent = false;
  bool has_point = false;
  bool has_digits = false;
};

std::vector<std::string_view> Sections(std::string_view format) {
  std::vector<std::string_view> sections;
  std::size_t begin = 0;
  bool in_quotes = false;
  for (std::size_t i = 0; i < format.size(); ++i) {
    if (format[i] == '\\') {
      ++i;
    } else if (format[i] == '"') {
      in_quotes = !in_quotes;
    } else if (format[i] == ';' && !in_quotes) {
      sections.push_back(format.substr(begin, i - begin));
      begin = i + 1;
    }
  }
  sections.push_back(format.substr(begin));
  return sections;
}

void AddDigit(Section& section, char c) {
  section.has_digits = true;
  if (section.has_point) {
    ++section.most_places;
    if (c == '0') section.least_places = section.most_places;
  } else if (c == '0' || section.whole_digits > 0) {
    ++section.whole_digits;
  }
}

Section Parse(std::string_view format) {
  Section section;
  bool in_quotes = false;
  const auto literal = [&section](char c) {
    (section.has_digits ? section.suffix : section.prefix) += c;
  };
  for (std::size_t i = 0; i < format.size(); ++i) {
    const char c = format[i];
    if (c == '"') {
      in_quotes = !in_quotes;
    } else if (in_quotes) {
      literal(c);
    } else if (c == '\\' && i + 1 < format.size()) {
      literal(format[++i]);
    } else if (c == '0' || c == '#') {
      AddDigit(section, c);
    } else if (c == '.') {
      section.has_point = true;
    } else if (c == ',') {
      section.grouped = true;
    } else {
      section.percent = section.percent || c == '%';
      literal(c);
    }
  }
  return section;
}

std::string General(double number) {
  char buffer[40];
  return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
}

bool SameLetters(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return (x | 0x20) == (y | 0x20); });
}

bool IsZero(const Decimal& decimal) {
  return decimal.digits.find_first_not_of('0') == std::string::npos;
}

}  // namespace

std::string FormatNumber(double number, std::string_view format) {
  if (std::isnan(number)) return "NaN";
  if (std::isinf(number)) return number > 0 ? "Infinity" : "-Infinity";
  for (const auto& [name, meaning] : kNamedFormats) {
    if (SameLetters(format, name)) format = meaning;
  }
  if (format.empty()) return General(number);

  const std::vector<std::string_view> sections = Sections(format);
  std::size_t chosen = 0;
  if (number < 0 && sections.size() > 1 && !sections[1].empty()) chosen = 1;
  if (number == 0 && sections.size() > 2 && !sections[2].empty()) chosen = 2;
  const Section section = Parse(sections[chosen]);
  if (!section.has_digits) return section.prefix;

  Decimal decimal = Shortest(std::fabs(number));
  if (section.percent) decimal.point += 2;
  Round(decimal, section.most_places);
  std::string text = section.prefix + WholePart(decimal, section.whole_digits, section.grouped);
  const std::string fraction = Fraction(decimal, section.least_places, section.most_places);
  if (!fraction.empty()) text += '.' + fraction;
  const bool minus = number < 0 && chosen == 0 && !IsZero(decimal);
  return (minus ? "-" : "") + text + section.suffix;
}

}  // namespace vok::olap
