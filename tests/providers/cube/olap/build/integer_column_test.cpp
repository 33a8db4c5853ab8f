#include "providers/cube/olap/build/integer_column.h"

#include <gtest/gtest.h>

#include <limits>

namespace vok::olap {
namespace {

constexpr int64_t kMost32 = std::numeric_limits<int32_t>::max();
constexpr int64_t kMost64 = std::numeric_limits<int64_t>::max();

TEST(IntegerColumn, KeepsEveryValueWhenItWidens) {
  const std::vector<int64_t> kValues = {0,           -1,           kMost32,  -kMost32 - 1,
                                        kMost32 + 1, -kMost32 - 2, -kMost64, kMost64};
  for (std::size_t count = 0; count <= kValues.size(); ++count) {
    IntegerColumn column;
    for (std::size_t row = 0; row < count; ++row) column.Add(kValues[row]);
    ASSERT_EQ(column.size(), count);
    for (std::size_t row = 0; row < count; ++row) EXPECT_EQ(column.At(row), kValues[row]);
    column.Replace([](int64_t value) { return value / 2; });
    ASSERT_EQ(column.size(), count);
    for (std::size_t row = 0; row < count; ++row) EXPECT_EQ(column.At(row), kValues[row] / 2);
  }
}

}  // namespace
}  // namespace vok::olap
