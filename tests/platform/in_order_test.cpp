#include "platform/in_order.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/resource.h>
#include <unistd.h>
#endif

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

namespace vok {
namespace {

constexpr int kWorks = 40;

/// Which numbers were taken, and the failure's words; works are slower the earlier they come.
std::string Take(unsigned threads, const std::string& failing, int number) {
  std::string taken;
  int next = 0;
  const auto fail = [&](const std::string& where, int at) {
    if (where == failing && at == number) throw std::runtime_error(where);
  };
  try {
    RunInOrder(threads, [&]() -> Working {
      const int at = next++;
      fail("begin", at);
      if (at == kWorks) return {};
      return [&, at]() -> Taking {
        if (at % 3 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        fail("work", at);
        return [&, at] {
          fail("take", at);
          taken += std::to_string(at) + " ";
        };
      };
    });
  } catch (const std::exception& failure) {
    taken += failure.what();
  }
  return taken;
}

std::string Numbers(int end) {
  std::string numbers;
  for (int number = 0; number < end; ++number) numbers += std::to_string(number) + " ";
  return numbers;
}

TEST(RunInOrder, TakesAllBeforeAFailureAndNothingAfterIt) {
  for (const unsigned threads : {1U, 2U, 5U}) {
    EXPECT_EQ(Take(threads, "", 0), Numbers(kWorks)) << threads;
    for (const std::string failing : {"begin", "work", "take"}) {
      for (const int number : {0, 7, kWorks - 1}) {
        EXPECT_EQ(Take(threads, failing, number), Numbers(number) + failing) << threads;
      }
    }
  }
}

#ifndef _WIN32
TEST(RunInOrder, DoesWithoutThreadsThatTheSystemDoesNotStart) {
  const auto alone = [] {
    const rlimit none{0, 0};
    if (setrlimit(RLIMIT_NPROC, &none) != 0) _exit(2);
    if (geteuid() == 0 && setuid(65534) != 0) _exit(3);  // limits do not hold for root
    try {
      std::thread([] {}).detach();
      _exit(4);
    } catch (const std::system_error&) {
      _exit(Take(4, "", 0) == Numbers(kWorks) ? 0 : 1);
    }
  };
  EXPECT_EXIT(alone(), testing::ExitedWithCode(0), "");
}
#endif

}  // namespace
}  // namespace vok
