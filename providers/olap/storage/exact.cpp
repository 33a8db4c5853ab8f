#include "providers/olap/storage/exact.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace vok::olap {
namespace {

/// Every power of ten that is a double without rounding.
constexpr std::array<double, 23> kExactPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                 1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

double NearestDoubleByText(Int128 number, int scale) {
  __extension__ using Unsigned = unsigned __int128;
  const bool negative = number < 0;
  Unsigned rest = negative ? -static_cast<Unsigned>(number) : static_cast<Unsigned>(number);
  std::string digits;
  for (; rest > 0; rest /= 10) digits += static_cast<char>('0' + static_cast<int>(rest % 10));
  if (negative) digits += '-';
  std::reverse(digits.begin(), digits.end());
  digits += "e-" + std::to_string(scale);
  double value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

}  // namespace

double NearestDouble(Int128 number, int scale) {
  constexpr Int128 kExactLimit = Int128{1} << 53;
  if (number <= kExactLimit && number >= -kExactLimit &&
      scale < static_cast<int>(kExactPowers.size())) {
    return static_cast<double>(static_cast<int64_t>(number)) /
           kExactPowers[static_cast<std::size_t>(scale)];
  }
  return NearestDoubleByText(number, scale);
}

}  // namespace vok::olap
