// Decimal numbers as scaled integers, and the one rounding to a double at the end.
#pragma once

#include <array>
#include <cstdint>

namespace vok::olap {

__extension__ using Int128 = __int128;

/// 10^0 up to 10^18.
inline constexpr std::array<int64_t, 19> kPowersOfTen = [] {
  std::array<int64_t, 19> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();

/// The double nearest to `number` / 10^`scale`.
double NearestDouble(Int128 number, int scale);

}  // namespace vok::olap
