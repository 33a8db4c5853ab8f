#include "providers/workbook/xlsx/deflate_block.h"

#include <cmath>
#include <random>

#include "providers/workbook/xlsx/checksum.h"
#include "providers/workbook/xlsx/number_text.h"
#include "workbook_tools.h"

namespace vok::xlsx {
namespace {

/// Any number below `end`.
std::size_t Any(std::size_t end) {
  static std::mt19937 random(5);
  return random() % end;
}

std::string AnyText(std::size_t longest, std::size_t letters) {
  std::string text;
  for (std::size_t size = Any(longest + 1); size > 0; --size)
    text += static_cast<char>(Any(letters));
  return text;
}

/// Adds a run of one of the three kinds.
std::string AddAny(DeflateBlock& block, std::vector<Repeated>& marks) {
  Repeated& mark = marks[Any(marks.size())];
  switch (Any(3)) {
    case 0:
      block.Add(mark);
      return mark.bytes;
    case 1: {
      const std::string digits = AnyText(17, Any(2) == 0 ? 256 : 2);
      block.AddNew(digits);
      return digits;
    }
    default: {
      const std::string text = AnyText(Any(1000) == 0 ? 40'000 : 30, 1 + Any(4));
      block.AddText(text);
      return text;
    }
  }
}

TEST(DeflateBlock, JoinedBlocksExpandToWhatWasAdded) {
  for (std::size_t blocks = 1; blocks < 60; ++blocks) {
    DeflateBlock block;
    std::vector<Repeated> marks(3);
    for (Repeated& mark : marks) mark.bytes = "abc" + AnyText(255, 3);
    ByteBuffer packed;
    std::string all;
    uint32_t checksum = 0;
    for (std::size_t i = 1; i <= blocks % 7; ++i) {
      for (std::size_t runs = Any(i == 3 ? 3000 : 30); runs > 0; --runs)
        all += AddAny(block, marks);
      const std::string_view added = block.Expanded();
      checksum = JoinedChecksum(checksum, Checksum(added), added.size());
      block.Finish(false, packed);
    }
    block.Finish(true, packed);
    EXPECT_TRUE(Expanded(packed.View(), all.size()) == all) << blocks;
    EXPECT_EQ(checksum, Checksum(all));
  }
}

TEST(DeflateBlock, TakesWhatRepeatsBeforeAMarkWithIt) {
  constexpr std::size_t kRows = 1000, kMostBits = 20;
  DeflateBlock block;
  Repeated open, first, second;
  open.bytes = "<open>";
  first.bytes = "</first>";
  second.bytes = "</second>";
  for (std::size_t row = 0; row < kRows; ++row) {
    block.AddNew(std::to_string(Any(10)));
    for (Repeated* end : {&first, &second}) {
      block.Add(open);
      block.AddText(end == &first ? "a" : "b");
      block.Add(*end);
    }
  }
  ByteBuffer packed;
  block.Finish(true, packed);
  EXPECT_LT(packed.size(), kRows * kMostBits / 8);
}

TEST(DeflateBlock, PacksNothingTooWellToBeBelieved) {
  const std::string even(300'000, ' ');
  DeflateBlock block;
  block.AddText(even);
  ByteBuffer packed;
  block.Finish(true, packed);
  EXPECT_GT(packed.size(), even.size());
  EXPECT_EQ(Expanded(packed.View(), even.size()), even);
}

TEST(NumberText, IsTheShortestThatReadsBack) {
  std::vector<double> numbers = {0.1 + 0.2, 1e5,   -1e5,     123456.78,       0.01,
                                 -0.5,      99.99, 1e15 / 3, 1e300,           5e-324,
                                 9e12,      1.005, -7,       9999999999999.99};
  for (int i = 0; i < 20'000; ++i) {
    numbers.push_back((static_cast<double>(Any(2'000'000)) - 1e6) / 100);
    numbers.push_back(
        std::ldexp(static_cast<double>(Any(1 << 30)), static_cast<int>(Any(60)) - 40));
  }
  for (const double number : numbers) {
    char fast[kLongestNumber], plain[kLongestNumber];
    const std::string_view found(fast, PutNumber(fast, number));
    EXPECT_EQ(found, std::string_view(plain, std::to_chars(plain, plain + 32, number).ptr));
  }
}

}  // namespace
}  // namespace vok::xlsx
