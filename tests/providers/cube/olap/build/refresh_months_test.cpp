// Which keys of the fact table are asked for when months are read anew.
#include "providers/cube/olap/build/refresh_months.h"

#include <gtest/gtest.h>

#include <span>

#include "tests/support/failures.h"

namespace vok::olap {
namespace {

/// "1..2 10.." for the ranges of keys whose wanted ones begin with "+".
std::string Ranges(const std::vector<std::string>& marked, bool is_open) {
  RecordedRows rows{1, {}, {}};
  std::vector<bool> wanted;
  for (const std::string& key : marked) {
    rows.leaves.push_back(static_cast<uint32_t>(wanted.size()));
    wanted.push_back(key[0] == '+');
    rows.fields.emplace_back(key.substr(wanted.back() ? 1 : 0));
  }
  std::string text;
  for (const KeyRange& range : RangesOf(rows, wanted, is_open, "dates")) {
    text += (text.empty() ? "" : " ") + range.low + ".." + range.high;
  }
  return text;
}

TEST(RefreshMonths, KeysAreRangesInTheOrderOfTime) {
  const struct {
    std::vector<std::string> keys;
    bool is_open;
    const char* ranges;
  } cases[] = {
      {{"20240101", "+20240201", "20240301"}, true, "20240201..20240201"},
      {{"+10", "1", "+9", "2"}, false, "9..10"},
      {{"+10", "1", "+9", "2"}, true, "9.."},
      {{"+-2", "-10", "+3", "4", "+5"}, true, "-2..3 5.."},
      {{"2024-01-31", "+2024-02-01", "+2024-02-29"}, false, "2024-02-01..2024-02-29"},
      {{"1", "2"}, true, ""},
  };
  for (const auto& each : cases) EXPECT_EQ(Ranges(each.keys, each.is_open), each.ranges);
  for (const auto& keys : {std::vector<std::string>{"+Jan", "Feb"},
                           {"+2024-1-31", "2024-10-31"},
                           {"+1", "2024-01-01"},
                           {"+1/31/2024", "2/29/2024"}}) {
    EXPECT_NE(test::DescriptionOf([&] { Ranges(keys, false); }).find("neither whole numbers nor"),
              std::string::npos)
        << keys[0];
  }
}

TEST(RefreshMonths, SumsAreExactOrNothing) {
  std::optional<ExactSum> sum = ExactSum();
  for (int count = 0; count < 4; ++count) AddTo(sum, INT64_MAX, 2);
  AddTo(sum, -5, 14);
  const CubeRecord record{"<Schema/>", {{2, {"a", std::nullopt}, {7}}}, 0, {{3, {sum, {}}}}};
  const std::string bytes = BytesOf(record);
  CubeRecord read = ReadRecord(std::as_bytes(std::span(bytes)), "a.cub");
  EXPECT_EQ(read.hierarchies.at(0).fields, record.hierarchies[0].fields);
  EXPECT_EQ(read.totals.at(0).sums, record.totals[0].sums);
  EXPECT_TRUE(*read.totals[0].sums[0] == *sum);
  AddTo(read.totals[0].sums[0], 5, 14);
  EXPECT_TRUE(*read.totals[0].sums[0] == (ExactSum{(Int128(INT64_MAX) << 2), 2}));
  AddTo(sum, 0, 22);
  EXPECT_FALSE(sum.has_value());
  const auto cut = std::as_bytes(std::span(bytes).first(bytes.size() - 1));
  EXPECT_NE(test::DescriptionOf([&] { ReadRecord(cut, "a.cub"); }).find("a.cub"),
            std::string::npos);
}

}  // namespace
}  // namespace vok::olap
