// Decimal numbers as scaled integers, and the one rounding to a double at the end.
#pragma once

#include <array>
#include <cstdint>

#include "providers/cube/olap/storage/wide_integer.h"

namespace vok::olap {

/// 10^0 up to 10^18.
inline constexpr std::array<int64_t, 19> kPowersOfTen = [] {
  std::array<int64_t, 19> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();

/// Every power of ten that is a double without rounding.
inline constexpr std::array<double, 23> kExactPowers = {
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// The same by way of digits, for any number.
double NearestDoubleByText(Int128 number, int scale);

/// The double nearest to `number` / 10^`scale`.
inline double NearestDouble(Int128 number, int scale) {
  constexpr int64_t kExactLimit = int64_t{1} << 53;
  if (number <= kExactLimit && number >= -kExactLimit &&
      scale < static_cast<int>(kExactPowers.size())) {
    return static_cast<double>(static_cast<int64_t>(number)) /
           kExactPowers[static_cast<std::size_t>(scale)];
  }
  return NearestDoubleByText(number, scale);
}

}  // namespace vok::olap
