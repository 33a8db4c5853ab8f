#include "providers/olap/storage/exact.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace vok::olap {
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

}  // namespace vok::olap
