#include "providers/cube/olap/storage/fact_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "native.h"
#include "providers/cube/olap/storage/column_memory.h"
#include "providers/cube/olap/storage/exact.h"
#include "tests/support/cubes/sample_cube.h"

namespace vok::olap {
namespace {

/// One hierarchy of lines, a measure over the given fields; line i has the fields of `cells[i]`.
test::CubeTexts OneColumn(const std::string& aggregator,
                          const std::vector<std::vector<std::string>>& cells) {
  std::string lines = "id\n";
  std::string facts = "id,value\n";
  for (std::size_t line = 0; line < cells.size(); ++line) {
    lines += std::to_string(line) + "\n";
    for (const std::string& field : cells[line]) facts += std::to_string(line) + "," + field + "\n";
  }
  return {
      R"(<Schema name="S"><Cube name="C"><Table name="fact"/><Dimension name="Line" foreignKey="id">
          <Hierarchy primaryKey="id"><Table name="line"/><Level name="Line" column="id" type="Integer"/></Hierarchy>
          </Dimension><Measure name="V" column="value" aggregator=")" +
          aggregator + R"("/></Cube></Schema>)",
      {{"line", lines}, {"fact", facts}}};
}

struct ColumnCase {
  const char* name;
  const char* aggregator;
  std::vector<std::vector<std::string>> cells;
  std::vector<std::optional<double>> expected;  // per line
  std::optional<double> total;
};

TEST(FactStore, ReadsWhatTheFieldsMean) {
  const ColumnCase cases[] = {
      {"zero, NULL and nothing are three things",
       "sum",
       {{"0"}, {""}, {}, {"10.5", "-10.5"}, {"", "2"}},
       {0.0, {}, {}, 0.0, 2.0},
       2.0},
      {"a count of NULLs is 0, of nothing is nothing",
       "count",
       {{"7", ""}, {""}, {}},
       {1.0, 0.0, {}},
       1.0},
      {"different values are counted once, NULL not",
       "distinct-count",
       {{"7", "7", "", "a"}, {""}, {}, {"7", "8"}},
       {2.0, 0.0, {}, 2.0},
       3.0},
      {"least and largest leave NULL out", "min", {{"3", "", "-2.5"}, {""}}, {-2.5, {}}, -2.5},
      {"largest of negative values", "max", {{"-3", "-2.5"}, {"-9"}}, {-2.5, -9.0}, -2.5},
      {"tenths add up exactly",
       "sum",
       {std::vector<std::string>(10, "0.1"), {"0.3", "-0.1", "-0.2"}},
       {1.0, 0.0},
       1.0},
      {"small values before a large one",
       "sum",
       {{"5", "-7"}, {"9223372036854775807"}},
       {-2.0, 9223372036854775807.0},
       9223372036854775805.0},
      {"numbers have many forms",
       "sum",
       {{"-0", "0e99999"},
        {"-12.50", ".5"},
        {"5."},
        {"+7"},
        {"1E3", "2.50e-3", "+4"},
        {"1.5E+2"},
        {"0000000000000000000000001.10000000000000000000000"}},
       {0.0, -12.0, 5.0, 7.0, 1004.0025, 150.0, 1.1},
       1155.1025},
      {"twenty-two digits after the point", "sum", {{"0.0000000000000000000001"}}, {1e-22}, 1e-22},
      {"numbers too long for 64 bits are doubles",
       "sum",
       {{"9223372036854775808"}, {"-9223372036854775809"}, {"1e19"}, {"0.00000000000000000000001"}},
       {9223372036854775808.0, -9223372036854775809.0, 1e19, 1e-23},
       1e19},
      {"nineteen digits are kept to the last",
       "sum",
       {{"9223372036854775807", "-9223372036854775806"}, {"5"}},
       {1.0, 5.0},
       6.0},
      {"sums past 64 bits",
       "sum",
       {{"9223372036854775807", "9223372036854775807", "-9223372036854775807",
         "-9223372036854775806"},
        {"9223372036854775807", "9223372036854775807"}},
       {1.0, 18446744073709551614.0},
       18446744073709551615.0},
      {"a sum is the double nearest to it",
       "sum",
       {{"-900719925474099.3"}, {"0.9223372036854775807"}},
       {-900719925474099.3, 0.9223372036854775807},
       -900719925474098.3776627963145224193},
      {"also past 64 bits",
       "sum",
       {std::vector<std::string>(1024, "922337203685477.5807"), {"-92233720368547.5808"}},
       {944473296573929042.6368, -92233720368547.5808},
       944381062853560495.056},
      {"and between two doubles",
       "sum",
       {{"9007199254740993"}},
       {9007199254740992.0},
       9007199254740992.0},
      {"one value that does not fit makes doubles of all",
       "sum",
       {{"0.25", "1e300"}, {"1.5"}, {"", "-3"}},
       {1e300, 1.5, -3.0},
       1e300},
      {"doubles compare as doubles", "min", {{"1e300", "-1e-300", "-2"}, {""}}, {-2.0, {}}, -2.0},
  };
  for (const ColumnCase& each : cases) {
    SCOPED_TRACE(each.name);
    const test::BuiltCube built(OneColumn(each.aggregator, each.cells));
    const auto lines = built.cube().facts->Read({{0}, {}, FactQuery::Group{0, 1}}).at(0);
    for (std::size_t line = 0; line < each.expected.size(); ++line) {
      EXPECT_EQ(lines.states[line] == CellState::kNumber, each.expected[line].has_value()) << line;
      EXPECT_EQ(lines.numbers[line], each.expected[line].value_or(0)) << line;
    }
    const auto total = built.cube().facts->Read({{0}, {}, {}}).at(0);
    EXPECT_EQ(total.states[0] == CellState::kNumber, each.total.has_value());
    EXPECT_EQ(total.numbers[0], each.total.value_or(0));
  }
}

TEST(FactStore, PutsRowsOfOneCellTogether) {
  const test::BuiltCube built(OneColumn("sum", {{"1", "2", "", "4"}, {"8"}, {}}));
  EXPECT_EQ(built.report().cubes[0].facts, 5u);
  EXPECT_EQ(built.report().cubes[0].stored_cells, 2u);
}

TEST(FactStore, IsNotDisturbedByACubeBuiltInItsPlace) {
  const test::TemporaryFolder folder;
  test::BuildInto(folder, OneColumn("sum", {{"1", "2"}, {"8"}}));
  const auto old_file = CubeFile::Open(test::NativeFiles(), folder.File("sample.cub"));
  test::BuildInto(folder, OneColumn("sum", {{"5"}, {"6"}, {"7"}}));
  const auto new_file = CubeFile::Open(test::NativeFiles(), folder.File("sample.cub"));
  const auto lines = [](const CubeFile& file) {
    return file.cubes()[0].facts->Read({{0}, {}, FactQuery::Group{0, 1}})[0].numbers;
  };
  EXPECT_THAT(lines(*old_file), testing::ElementsAre(3, 8));
  EXPECT_THAT(lines(*new_file), testing::ElementsAre(5, 6, 7));
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

/// Sizes on both sides of where pieces begin to be kept, and of where the next larger one begins.
constexpr std::size_t kSizes[] = {1, 4095, 4096, 4097, 4608, 4609, 80008, 1 << 20, (1 << 20) + 1};

/// Two pieces at a time, written from end to end; each must keep what it was given.
void UseAllSizes(unsigned char mark) {
  for (int round = 0; round < 20; ++round) {
    for (const std::size_t bytes : kSizes) {
      std::vector<unsigned char, ColumnAllocator<unsigned char>> a(bytes, mark);
      const std::vector<unsigned char, ColumnAllocator<unsigned char>> b(bytes, mark ^ 0xFF);
      ASSERT_EQ(std::count(a.begin(), a.end(), mark), static_cast<std::ptrdiff_t>(bytes));
      a.push_back(mark);
      ASSERT_EQ(std::count(b.begin(), b.end(), mark), 0);
    }
  }
}

TEST(ColumnMemory, IsNeverInUseTwice) {
  std::vector<std::thread> threads;
  for (unsigned char mark = 1; mark <= 4; ++mark) threads.emplace_back(UseAllSizes, mark);
  for (std::thread& thread : threads) thread.join();
}

TEST(ColumnMemory, IsHandedOutAgain) {
  constexpr std::size_t kBytes = 100000;
  void* const first = TakeColumnMemory(kBytes);
  ReturnColumnMemory(first, kBytes);
  void* const second = TakeColumnMemory(kBytes);
  EXPECT_EQ(first, second);
  ReturnColumnMemory(second, kBytes);
}

}  // namespace
}  // namespace vok::olap
