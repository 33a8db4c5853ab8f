#include "providers/cube/xmla/cell_value.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace vok::xmla {
namespace {

constexpr std::array<std::string_view, 13> kWholeTypes = {"int",
                                                          "integer",
                                                          "short",
                                                          "long",
                                                          "byte",
                                                          "unsignedInt",
                                                          "unsignedShort",
                                                          "unsignedLong",
                                                          "unsignedByte",
                                                          "nonNegativeInteger",
                                                          "positiveInteger",
                                                          "nonPositiveInteger",
                                                          "negativeInteger"};
constexpr std::array<std::string_view, 3> kRealTypes = {"double", "float", "decimal"};

template <std::size_t size>
bool Holds(const std::array<std::string_view, size>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::string_view WithoutWhite(std::string_view text) {
  constexpr std::string_view kWhite = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kWhite);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhite) - first + 1);
}

std::optional<double> NamedNumber(std::string_view unsigned_text) {
  if (unsigned_text == "INF" || unsigned_text == "Infinity") {
    return std::numeric_limits<double>::infinity();
  }
  if (unsigned_text == "NaN") return std::numeric_limits<double>::quiet_NaN();
  return std::nullopt;
}

/// Beyond the range of a double: as large as it gets, or zero, as XML schema has it.
double OutOfRange(std::string_view digits) {
  const std::size_t exponent = digits.find_first_of("eE");
  const bool tiny = exponent != std::string_view::npos && exponent + 1 < digits.size() &&
                    digits[exponent + 1] == '-';
  return tiny ? 0 : std::numeric_limits<double>::infinity();
}

CellValue WholeOrReal(double number, bool whole_type) {
  const bool whole = whole_type && number >= std::numeric_limits<int32_t>::min() &&
                     number <= std::numeric_limits<int32_t>::max() && number == std::trunc(number);
  return {whole ? CellState::kInteger : CellState::kNumber, number};
}

}  // namespace

std::optional<double> XmlNumber(std::string_view text) {
  std::string_view digits = WithoutWhite(text);
  const bool negative = digits.starts_with('-');
  if (negative || digits.starts_with('+')) digits.remove_prefix(1);
  if (digits.empty()) return std::nullopt;
  double number = 0;
  if (const auto named = NamedNumber(digits)) {
    number = *named;
  } else {
    const bool starts_well = digits[0] == '.' || (digits[0] >= '0' && digits[0] <= '9');
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (!starts_well || result.ptr != digits.data() + digits.size()) return std::nullopt;
    if (result.ec == std::errc::result_out_of_range) number = OutOfRange(digits);
  }
  return negative ? -number : number;
}

CellValue ReadCellValue(std::string_view type, std::string_view text) {
  const std::size_t colon = type.find(':');
  if (colon != std::string_view::npos) type.remove_prefix(colon + 1);
  const bool whole = Holds(kWholeTypes, type);
  if (whole || Holds(kRealTypes, type) || type.empty()) {
    if (const auto number = XmlNumber(text)) return WholeOrReal(*number, whole);
    return {type.empty() ? CellState::kText : CellState::kError, 0};
  }
  if (type == "boolean") {
    const std::string_view word = WithoutWhite(text);
    return {CellState::kLogical, word == "true" || word == "1" ? 1.0 : 0.0};
  }
  return {CellState::kText, 0};
}

}  // namespace vok::xmla
