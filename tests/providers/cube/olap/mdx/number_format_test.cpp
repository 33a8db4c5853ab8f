#include "providers/cube/olap/mdx/number_format.h"

#include <gtest/gtest.h>

#include <limits>

namespace vok::olap {
namespace {

TEST(NumberFormat, FollowsTheFormatAndNoCountry) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const struct {
    double number;
    const char* format;
    const char* text;
  } kCases[] = {
      {12836, "#0.00", "12836.00"},
      {20436089.25, "#,##0.00", "20,436,089.25"},
      {20000, "#,##0", "20,000"},
      {0, "#,##0.00", "0.00"},
      {0.125, "#0.00", "0.13"},
      {2.675, "0.00", "2.68"},
      {-0.004, "#0.00", "0.00"},
      {999.995, "#,##0.00", "1,000.00"},
      {9.96, "0.#", "10"},
      {-1234.5, "Standard", "-1,234.50"},
      {0.1234, "Percent", "12.34%"},
      {1e21, "#,##0", "1,000,000,000,000,000,000,000"},
      {1234.5678, "", "1234.5678"},
      {-5, "0.0;(0.0);\"none\"", "(5.0)"},
      {0, "0.0;(0.0);\"none\"", "none"},
      {7, "\\#000", "#007"},
      {0.5, "#.##", ".5"},
      {kInfinity, "#0.00", "Infinity"},
      {-kInfinity, "", "-Infinity"},
      {std::numeric_limits<double>::quiet_NaN(), "#0.00", "NaN"},
  };
  for (const auto& test : kCases) {
    EXPECT_EQ(FormatNumber(test.number, test.format), test.text) << test.format;
  }
}

}  // namespace
}  // namespace vok::olap
