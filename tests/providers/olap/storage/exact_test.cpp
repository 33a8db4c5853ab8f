#include "providers/olap/storage/exact.h"

#include <gtest/gtest.h>

#include <charconv>
#include <limits>
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
      {Int128{kMost} * 1000, 4, "922337203685477580.7000"},
      {Int128{kMost} * kMost, 22, "8507059173023461.5847396907784232501249"},
      {1, 22, "0.0000000000000000000001"},
  };
  for (const auto& each : cases) {
    const std::string text = each.text;
    double meant = 0;
    std::from_chars(text.data(), text.data() + text.size(), meant);
    EXPECT_EQ(NearestDouble(each.number, each.scale), meant) << text;
  }
}

}  // namespace
}  // namespace vok::olap
