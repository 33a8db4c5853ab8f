// Decimal numbers read digit by digit, without a double on the way.
#pragma once

#include <cstdint>
#include <string_view>

namespace vok::olap {

enum class NumberFit {
  kNone,     ///< the text is not a number
  kDecimal,  ///< `number` / 10^`scale` exactly
  kTooLong   ///< a number with more digits than a `Decimal` holds
};

struct Decimal {
  NumberFit fit = NumberFit::kNone;
  int64_t number = 0;
  uint8_t scale = 0;
};

/// "-12.50", ".5", "1E-3". No blanks, no thousands separators.
Decimal ParseDecimal(std::string_view text);

/// Makes `number` * 10^`places` of it; false when that does not fit.
bool ShiftDecimal(int64_t& number, int places);

}  // namespace vok::olap
