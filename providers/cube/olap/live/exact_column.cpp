#include "providers/cube/olap/live/exact_column.h"

#include <charconv>
#include <cmath>
#include <optional>

#include "providers/cube/olap/storage/exact.h"

namespace vok::olap {
namespace {

constexpr int kMostDigits = 38;
constexpr int kMostScale = 38;

Int128 TenTimes(Int128 number) { return (number << 3) + (number << 1); }

/// How many digits the number has.
int DigitsOf(Int128 number) {
  if (number < 0) number = -number;
  int digits = 0;
  for (Int128 power = 1; digits <= kMostDigits && power <= number; ++digits) {
    power = TenTimes(power);
  }
  return digits;
}

struct Number {
  Int128 digits = 0;
  int scale = 0;
};

/// "-12.50": servers write sums of decimals without an exponent.
std::optional<Number> Parse(std::string_view text) {
  const bool is_negative = text.starts_with('-');
  text.remove_prefix(is_negative ? 1 : 0);
  Number number;
  bool has_point = false;
  int digits = 0;
  for (const char letter : text) {
    if (letter == '.' && !has_point) {
      has_point = true;
      continue;
    }
    if (letter < '0' || letter > '9') return std::nullopt;
    digits += digits > 0 || letter != '0' ? 1 : 0;
    if (digits > kMostDigits) return std::nullopt;
    number.digits = TenTimes(number.digits) + (letter - '0');
    number.scale += has_point ? 1 : 0;
  }
  if (text.empty() || number.scale > kMostScale) return std::nullopt;
  if (is_negative) number.digits = -number.digits;
  return number;
}

template <typename Value>
Value Joined(Aggregator aggregator, Value a, Value b) {
  if (aggregator == Aggregator::kMin) return b < a ? b : a;
  if (aggregator == Aggregator::kMax) return a < b ? b : a;
  return a + b;
}

}  // namespace

ExactColumn::ExactColumn(Aggregator aggregator, bool is_binary_fraction, std::size_t size)
    : aggregator_(aggregator),
      is_binary_fraction_(is_binary_fraction && aggregator != Aggregator::kCount),
      decimals_(is_binary_fraction_ ? 0 : size),
      fractions_(is_binary_fraction_ ? size : 0),
      states_(size, CellState::kEmpty) {}

bool ExactColumn::Add(std::size_t at, std::string_view text) {
  return is_binary_fraction_ ? AddFraction(at, text) : AddDecimal(at, text);
}

bool ExactColumn::AddDecimal(std::size_t at, std::string_view text) {
  auto number = Parse(text);
  if (!number) return false;
  if (aggregator_ == Aggregator::kCount && number->digits == 0) return true;
  if (number->scale > scale_ && !Rescale(number->scale)) return false;
  const int places = scale_ - number->scale;
  if (DigitsOf(number->digits) + places > kMostDigits) return false;
  for (int place = 0; place < places; ++place) number->digits = TenTimes(number->digits);
  Int128& cell = decimals_[at];
  cell =
      states_[at] == CellState::kEmpty ? number->digits : Joined(aggregator_, cell, number->digits);
  states_[at] = CellState::kNumber;
  return DigitsOf(cell) <= kMostDigits;
}

bool ExactColumn::AddFraction(std::size_t at, std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) {
    return false;
  }
  long double& cell = fractions_[at];
  cell = states_[at] == CellState::kEmpty ? number : Joined<long double>(aggregator_, cell, number);
  states_[at] = CellState::kNumber;
  return true;
}

bool ExactColumn::Rescale(int scale) {
  for (Int128& cell : decimals_) {
    if (DigitsOf(cell) + scale - scale_ > kMostDigits) return false;
    for (int place = scale_; place < scale; ++place) cell = TenTimes(cell);
  }
  scale_ = scale;
  return true;
}

FactColumn ExactColumn::Result() const {
  FactColumn column(states_.size());
  for (std::size_t at = 0; at < states_.size(); ++at) {
    if (states_[at] == CellState::kEmpty) continue;
    column.states[at] = CellState::kNumber;
    column.numbers[at] = is_binary_fraction_ ? static_cast<double>(fractions_[at])
                                             : NearestDouble(decimals_[at], scale_);
    column.overflows = column.overflows || !std::isfinite(column.numbers[at]);
  }
  return column;
}

}  // namespace vok::olap
