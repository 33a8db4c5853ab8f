#include "providers/cube/olap/storage/column_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

namespace vok::olap {
namespace {

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
