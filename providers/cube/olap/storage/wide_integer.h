// Whole numbers of 128 bits: the compiler's own, or the same in two words for compilers without.
#pragma once

#include <compare>
#include <concepts>
#include <cstdint>

namespace vok::olap {

/// Two's complement, of which it offers what this engine needs. Sums and shifts that do not fit
/// wrap.
class WideInteger {
 public:
  constexpr WideInteger() = default;
  constexpr WideInteger(int64_t number)
      : high_(number < 0 ? ~uint64_t{0} : 0), low_(static_cast<uint64_t>(number)) {}

  /// The lowest bits.
  template <std::integral Narrow>
  explicit constexpr operator Narrow() const {
    return static_cast<Narrow>(low_);
  }

  friend constexpr WideInteger operator+(WideInteger a, WideInteger b) {
    const uint64_t low = a.low_ + b.low_;
    return {a.high_ + b.high_ + (low < a.low_ ? 1 : 0), low};
  }
  constexpr WideInteger operator-() const { return WideInteger(~high_, ~low_) + 1; }
  friend constexpr WideInteger operator-(WideInteger a, WideInteger b) { return a + -b; }
  constexpr WideInteger& operator+=(WideInteger other) { return *this = *this + other; }

  friend constexpr WideInteger operator&(WideInteger a, WideInteger b) {
    return {a.high_ & b.high_, a.low_ & b.low_};
  }
  constexpr WideInteger& operator|=(WideInteger other) {
    return *this = {high_ | other.high_, low_ | other.low_};
  }
  /// `bits` is less than 128.
  constexpr WideInteger operator<<(uint32_t bits) const {
    if (bits >= kWord) return {low_ << (bits - kWord), 0};
    if (bits == 0) return *this;
    return {high_ << bits | low_ >> (kWord - bits), low_ << bits};
  }
  constexpr WideInteger operator>>(uint32_t bits) const {
    const auto high = static_cast<int64_t>(high_);
    if (bits >= kWord) return high >> (bits - kWord);
    if (bits == 0) return *this;
    return {static_cast<uint64_t>(high >> bits), low_ >> bits | high_ << (kWord - bits)};
  }

  friend constexpr bool operator==(WideInteger, WideInteger) = default;
  friend constexpr std::strong_ordering operator<=>(WideInteger a, WideInteger b) {
    if (a.high_ == b.high_) return a.low_ <=> b.low_;
    return static_cast<int64_t>(a.high_) <=> static_cast<int64_t>(b.high_);
  }

 private:
  static constexpr uint32_t kWord = 64;
  constexpr WideInteger(uint64_t high, uint64_t low) : high_(high), low_(low) {}

  uint64_t high_ = 0;
  uint64_t low_ = 0;
};

#ifdef __SIZEOF_INT128__
__extension__ using Int128 = __int128;
#else
using Int128 = WideInteger;
#endif

}  // namespace vok::olap
