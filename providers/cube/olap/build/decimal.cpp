#include "providers/cube/olap/build/decimal.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>

#include "providers/cube/olap/storage/exact.h"
#include "providers/cube/olap/storage/format.h"

namespace vok::olap {
namespace {

bool IsDigit(char letter) { return letter >= '0' && letter <= '9'; }

/// A number's text, cut in its parts: sign, digits without the point, places, exponent.
struct Parts {
  bool is_number = false;
  bool negative = false;
  std::string digits;
  int64_t places = 0;  // digits after the point, less the exponent
};

Parts Split(std::string_view text) {
  Parts parts;
  std::size_t at = 0;
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) parts.negative = text[at++] == '-';
  for (; at < text.size() && IsDigit(text[at]); ++at) parts.digits += text[at];
  if (at < text.size() && text[at] == '.') {
    for (++at; at < text.size() && IsDigit(text[at]); ++at, ++parts.places) {
      parts.digits += text[at];
    }
  }
  if (parts.digits.empty()) return parts;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at + 1 < text.size() && text[at] == '+' && IsDigit(text[at + 1])) ++at;
    int32_t exponent = 0;
    const auto [end, error] =
        std::from_chars(text.data() + at, text.data() + text.size(), exponent);
    if (error != std::errc()) return parts;
    at = static_cast<std::size_t>(end - text.data());
    parts.places -= exponent;
  }
  parts.is_number = at == text.size();
  return parts;
}

Decimal ParseAnyDecimal(std::string_view text) {
  Parts parts = Split(text);
  if (!parts.is_number) return {};
  while (parts.digits.size() > 1 && parts.digits.back() == '0') {
    parts.digits.pop_back();
    --parts.places;
  }
  parts.digits.erase(0, std::min(parts.digits.find_first_not_of('0'), parts.digits.size()));
  if (parts.digits.empty()) return {NumberFit::kDecimal, 0, 0};
  constexpr int64_t kMostDigits = std::numeric_limits<int64_t>::digits10 + 1;
  const int64_t zeros = std::max<int64_t>(0, -parts.places);
  const auto length = static_cast<int64_t>(parts.digits.size()) + zeros;
  if (length > kMostDigits || parts.places > kMaxScale) return {NumberFit::kTooLong, 0, 0};
  parts.digits.append(static_cast<std::size_t>(zeros), '0');
  if (parts.negative) parts.digits.insert(0, "-");
  Decimal decimal{NumberFit::kDecimal, 0, static_cast<uint8_t>(parts.places + zeros)};
  const auto* end = parts.digits.data() + parts.digits.size();
  if (std::from_chars(parts.digits.data(), end, decimal.number).ec != std::errc()) {
    return {NumberFit::kTooLong, 0, 0};
  }
  return decimal;
}

}  // namespace

Decimal ParseDecimal(std::string_view text) {
  // Nearly every number is a few digits with a point among them.
  constexpr std::size_t kShort = 18;
  if (text.size() > kShort) return ParseAnyDecimal(text);
  const bool negative = !text.empty() && text[0] == '-';
  int64_t number = 0;
  std::size_t point = text.size();
  for (std::size_t at = negative; at < text.size(); ++at) {
    if (text[at] == '.' && point == text.size()) {
      point = at;
    } else if (IsDigit(text[at])) {
      number = number * 10 + (text[at] - '0');
    } else {
      return ParseAnyDecimal(text);
    }
  }
  const std::size_t scale = point == text.size() ? 0 : text.size() - point - 1;
  const std::size_t digits = text.size() - negative - (point == text.size() ? 0 : 1);
  if (digits == 0) return {};
  return {NumberFit::kDecimal, negative ? -number : number, static_cast<uint8_t>(scale)};
}

bool ShiftDecimal(int64_t& number, int places) {
  if (number == 0) return true;
  if (places >= static_cast<int>(kPowersOfTen.size())) return false;
  return !__builtin_mul_overflow(number, kPowersOfTen[static_cast<std::size_t>(places)], &number);
}

}  // namespace vok::olap
