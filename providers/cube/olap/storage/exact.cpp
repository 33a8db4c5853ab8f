#include "providers/cube/olap/storage/exact.h"

#include <array>
#include <charconv>
#include <string>

namespace vok::olap {
namespace {

/// The decimal digits of a number that is not negative, zeros before them.
std::string DigitsOf(Int128 number) {
  constexpr uint64_t kNineDigits = 1'000'000'000;
  constexpr int kGroups = 5;        // 2^127 has 39 digits
  std::array<uint64_t, 4> words{};  // of 32 bits, the highest first
  for (uint32_t i = 0; i < words.size(); ++i) {
    words[i] = static_cast<uint32_t>(number >> (96 - 32 * i));
  }
  std::string digits;
  for (int group = 0; group < kGroups; ++group) {
    uint64_t rest = 0;
    for (uint64_t& word : words) {
      const uint64_t part = rest << 32 | word;
      word = part / kNineDigits;
      rest = part % kNineDigits;
    }
    digits.insert(0, std::to_string(kNineDigits + rest), 1);
  }
  return digits;
}

}  // namespace

double NearestDoubleByText(Int128 number, int scale) {
  const std::string text =
      (number < 0 ? "-" + DigitsOf(-number) : DigitsOf(number)) + "e-" + std::to_string(scale);
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

}  // namespace vok::olap
