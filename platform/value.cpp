#include "platform/value.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "platform/failure.h"

namespace vok {
namespace {

[[noreturn]] void ThrowMismatch(const Value& value) {
  if (value.IsNull()) throw Failure(failure_number::kInvalidNull, "Invalid use of Null");
  throw Failure(failure_number::kTypeMismatch, "Type mismatch");
}

template <typename Number>
std::string Print(Number number) {
  char buffer[32];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, number).ptr;
  return std::string(buffer, end);
}

double ParseNumber(const std::string& text) {
  double number = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc{} || result.ptr != end) {
    throw Failure(failure_number::kTypeMismatch, "Type mismatch: \"" + text + "\" is not a number");
  }
  return number;
}

template <typename Integer>
Integer RoundTo(double number) {
  const double rounded = std::nearbyint(number);  // half to even, as the platform rounds
  if (!(rounded >= std::numeric_limits<Integer>::min() &&
        rounded <= std::numeric_limits<Integer>::max())) {
    throw Failure(failure_number::kOverflow, "Overflow");
  }
  return static_cast<Integer>(rounded);
}

}  // namespace

std::string Value::ToText() const {
  if (IsEmpty()) return {};
  if (const auto* text = As<std::string>()) return *text;
  if (const auto* flag = As<bool>()) return *flag ? "True" : "False";
  if (const auto* number = As<int16_t>()) return Print(*number);
  if (const auto* number = As<int32_t>()) return Print(*number);
  if (const auto* number = As<double>()) return Print(*number);
  ThrowMismatch(*this);
}

double Value::ToDouble() const {
  if (IsEmpty()) return 0;
  if (const auto* number = As<double>()) return *number;
  if (const auto* number = As<int32_t>()) return *number;
  if (const auto* number = As<int16_t>()) return *number;
  if (const auto* flag = As<bool>()) return *flag ? -1 : 0;
  if (const auto* date = As<Date>()) return date->serial;
  if (const auto* text = As<std::string>()) return ParseNumber(*text);
  ThrowMismatch(*this);
}

int16_t Value::ToInt16() const { return RoundTo<int16_t>(ToDouble()); }
int32_t Value::ToInt32() const { return RoundTo<int32_t>(ToDouble()); }
bool Value::ToBoolean() const { return ToDouble() != 0; }
Date Value::ToDate() const { return Date{ToDouble()}; }

}  // namespace vok
