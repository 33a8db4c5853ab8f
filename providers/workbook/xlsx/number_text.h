// The shortest text of a number that reads back to the same one.
#pragma once

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace vok::xlsx {

/// Most characters of a number.
inline constexpr std::size_t kLongestNumber = 32;

/// Writes `number`, which is finite, at `at` and returns the end: what `std::to_chars` gives, found
/// faster for amounts with two decimals at most, as most are.
inline char* PutNumber(char* at, double number) {
  constexpr double kMostHundredths = 1e15;  // every whole number below is exact
  constexpr int64_t kTooRound = 10'000'000;
  const double hundredths = std::nearbyint(number * 100);
  if (std::fabs(hundredths) < kMostHundredths && hundredths / 100 == number) {
    auto whole = static_cast<int64_t>(hundredths);
    // Such as 100000, which is shorter as 1e+05.
    if (whole % kTooRound != 0 && std::fabs(number) >= 1) {
      if (whole < 0) {
        *at++ = '-';
        whole = -whole;
      }
      at = std::to_chars(at, at + kLongestNumber, whole / 100).ptr;
      const auto cents = static_cast<int>(whole % 100);
      if (cents == 0) return at;
      *at++ = '.';
      *at++ = static_cast<char>('0' + cents / 10);
      if (cents % 10 != 0) *at++ = static_cast<char>('0' + cents % 10);
      return at;
    }
  }
  return std::to_chars(at, at + kLongestNumber, number).ptr;
}

}  // namespace vok::xlsx
