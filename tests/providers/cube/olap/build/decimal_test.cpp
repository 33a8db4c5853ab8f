#include "providers/cube/olap/build/decimal.h"

#include <gtest/gtest.h>

#include <string>

namespace vok::olap {
namespace {

/// The digits, and how many stand after the point.
std::string Reading(const char* text) {
  const Decimal decimal = ParseDecimal(text);
  if (decimal.fit == NumberFit::kNone) return "no number";
  if (decimal.fit == NumberFit::kTooLong) return "too long";
  return std::to_string(decimal.number) + " / " + std::to_string(decimal.scale);
}

TEST(ParseDecimal, ReadsEveryDigitAndTellsTooLongFromNoNumber) {
  const struct {
    const char* reading;
    std::vector<const char*> texts;
  } cases[] = {
      {"0 / 0", {"0", "-0", "0e99999"}},
      {"-1250 / 2", {"-12.50"}},
      {"5 / 1", {".5"}},
      {"5 / 0", {"5."}},
      {"7 / 0", {"+7"}},
      {"1000 / 0", {"1e3"}},
      {"150 / 0", {"1.5E+2"}},
      {"25 / 4", {"2.50e-3"}},
      {"9223372036854775807 / 0", {"9223372036854775807"}},
      {"-9223372036854775808 / 0", {"-9223372036854775808"}},
      {"11 / 1", {"0000000000000000000000001.10000000000000000000000"}},
      {"1 / 22", {"0.0000000000000000000001"}},
      {"too long",
       {"9223372036854775808", "-9223372036854775809", "1e19", "1.5e300",
        "0.00000000000000000000001", "12345678901234567890.5"}},
      {"no number",
       {"", "-", "+", ".", "-.", "1,5", " 1", "1 ", "1e", "1e+", "1e+-2", "1e1.5", "--1", "1.2.3",
        "0x10", "nan", "inf", "1e99999999999", "½"}},
  };
  for (const auto& each : cases) {
    for (const char* text : each.texts) EXPECT_EQ(Reading(text), each.reading) << text;
  }
}

}  // namespace
}  // namespace vok::olap
