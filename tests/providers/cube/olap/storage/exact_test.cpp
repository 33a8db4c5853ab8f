#include "providers/cube/olap/storage/exact.h"

#include <gtest/gtest.h>

#include <charconv>
#include <limits>
#include <random>
#include <string>

namespace vok::olap {
namespace {

TEST(NearestDouble, IsWhatTheDecimalTextMeans) {
  constexpr int64_t kMost = std::numeric_limits<int64_t>::max();
  const struct {
    Int128 number;
    int scale;
    const char* text;
  } cases[] = {
      {0, 2, "0"},
      {-1050, 2, "-10.50"},
      {3, 1, "0.3"},
      {(Int128{1} << 53) + 1, 0, "9007199254740993"},
      {(Int128{1} << 53) + 1, 1, "900719925474099.3"},
      {kMost, 19, "0.9223372036854775807"},
      {-Int128{kMost} - 1, 2, "-92233720368547758.08"},
      {Int128{kMost} << 10, 4, "944473296573929042.6368"},
      {(Int128{1} << 126) - (Int128{1} << 64) + 1, 22, "8507059173023461.5847396907784232501249"},
      {1, 22, "0.0000000000000000000001"},
  };
  for (const auto& each : cases) {
    const std::string text = each.text;
    double meant = 0;
    std::from_chars(text.data(), text.data() + text.size(), meant);
    EXPECT_EQ(NearestDouble(each.number, each.scale), meant) << text;
  }
}

// Where the compiler has no such type there is nothing to compare with.
TEST(WideInteger, CountsLikeTheCompilersOwn) {
  std::mt19937_64 random(7);
  const auto word = [&random] { return static_cast<int64_t>(random()) >> random() % 64; };
  const auto check = [](WideInteger mine, Int128 own, const char* what) {
    EXPECT_EQ(static_cast<uint64_t>(mine), static_cast<uint64_t>(own)) << what;
    EXPECT_EQ(static_cast<uint64_t>(mine >> 64), static_cast<uint64_t>(own >> 64)) << what;
  };
  for (int round = 0; round < 20'000; ++round) {
    const int64_t high = word(), low = word(), narrow = word();
    const auto bits = static_cast<uint32_t>(random() % 63);
    const WideInteger a = (WideInteger(high) << bits) + low, b = narrow;
    const Int128 own_a = (Int128{high} << bits) + low, own_b = narrow;
    check(a + b, own_a + own_b, "sum");
    check(a - b, own_a - own_b, "difference");
    check(-a, -own_a, "negative");
    check(a & b, own_a & own_b, "common bits");
    WideInteger both = a;
    Int128 own_both = own_a;
    check(both |= b, own_both |= own_b, "all bits");
    check(a << bits, own_a << bits, "left");
    check(a >> 2 * bits, own_a >> 2 * bits, "right");
    EXPECT_EQ(a < b, own_a < own_b);
    EXPECT_EQ(a == b, own_a == own_b);
  }
}

}  // namespace
}  // namespace vok::olap
