#include "providers/olap/build/decimal.h"

#include <gtest/gtest.h>

namespace vok::olap {
namespace {

TEST(ParseDecimal, ReadsEveryDigit) {
  const struct {
    const char* text;
    int64_t number;
    int scale;
  } cases[] = {{"0", 0, 0},
               {"-0", 0, 0},
               {"-12.50", -1250, 2},
               {".5", 5, 1},
               {"5.", 5, 0},
               {"+7", 7, 0},
               {"1e3", 1000, 0},
               {"1.5E+2", 150, 0},
               {"2.50e-3", 25, 4},
               {"0e99999", 0, 0},
               {"9223372036854775807", 9223372036854775807, 0},
               {"-9223372036854775808", INT64_MIN, 0},
               {"0000000000000000000000001.10000000000000000000000", 11, 1},
               {"0.0000000000000000000001", 1, 22}};
  for (const auto& each : cases) {
    const Decimal decimal = ParseDecimal(each.text);
    EXPECT_EQ(decimal.fit, NumberFit::kDecimal) << each.text;
    EXPECT_EQ(decimal.number, each.number) << each.text;
    EXPECT_EQ(decimal.scale, each.scale) << each.text;
  }
}

TEST(ParseDecimal, TellsTooLongFromNoNumber) {
  for (const char* text : {"9223372036854775808", "-9223372036854775809", "1e19", "1.5e300",
                           "0.00000000000000000000001", "12345678901234567890.5"}) {
    EXPECT_EQ(ParseDecimal(text).fit, NumberFit::kTooLong) << text;
  }
  for (const char* text : {"", "-", "+", ".", "-.", "1,5", " 1", "1 ", "1e", "1e+", "1e+-2",
                           "1e1.5", "--1", "1.2.3", "0x10", "nan", "inf", "1e99999999999", "½"}) {
    EXPECT_EQ(ParseDecimal(text).fit, NumberFit::kNone) << text;
  }
}

}  // namespace
}  // namespace vok::olap
