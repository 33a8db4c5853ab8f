#include "platform/value.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/support/failures.h"

namespace vok {
namespace {

TEST(Value, ConvertsAsThePlatformDoes) {
  EXPECT_EQ(Value().ToText(), "");
  EXPECT_EQ(Value(true).ToText(), "True");
  EXPECT_EQ(Value(int32_t{-7}).ToText(), "-7");
  EXPECT_EQ(Value(0.1).ToText(), "0.1");
  EXPECT_EQ(Value(true).ToInt16(), -1);
  EXPECT_EQ(Value("12.5").ToDouble(), 12.5);
  EXPECT_EQ(Value(2.5).ToInt16(), 2);  // half to even
  EXPECT_EQ(Value(3.5).ToInt16(), 4);
  EXPECT_EQ(Value(Date{45351}).ToDate(), Date{45351});
  EXPECT_TRUE(Value(int16_t{2}).ToBoolean());
  EXPECT_EQ(Value(32767.4).ToInt16(), 32767);
}

TEST(Value, RefusesWhatHasNoSuchForm) {
  const struct {
    const char* what;
    std::function<void()> convert;
    int32_t number;
  } cases[] = {
      {"null text", [] { Value(Null{}).ToText(); }, 94},
      {"null date", [] { Value(Null{}).ToDate(); }, 94},
      {"null flag", [] { Value(Null{}).ToBoolean(); }, 94},
      {"word as number", [] { Value("twelve").ToDouble(); }, 13},
      {"number with rest", [] { Value("12x").ToDouble(); }, 13},
      {"array as text", [] { Value(Value::Array{}).ToText(); }, 13},
      {"too large for 16 bits", [] { Value(int32_t{32768}).ToInt16(); }, 6},
      {"not a number as integer", [] { Value(0.0 / 0.0 * 1).ToInt32(); }, 6},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(test::NumberOf(c.convert), c.number) << c.what;
  }
}

}  // namespace
}  // namespace vok
