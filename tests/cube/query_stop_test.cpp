#include "cube/query_stop.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "tests/support/failures.h"
#include "tests/support/fake_cube.h"

namespace vok::test {
namespace {

/// Shows by its count, and to a sanitizer by its end, who still uses it.
struct CountingConnection : fake_cube::Connection {
  CountingConnection(FakeCube& cube, int& cancelled)
      : fake_cube::Connection(cube), cancelled_(cancelled) {}
  void Cancel() override { ++cancelled_; }

 private:
  int& cancelled_;
};

TEST(QueryStop, ReachesTheConnectionWhileItIsThereAndTheRunAlways) {
  FakeCube cube;
  for (int run = 0; run < 1000; ++run) {
    QueryStop stop;
    int cancelled = 0;
    std::thread other([&stop] { stop.Ask(); });
    bool told = false;
    try {
      const auto connection = std::make_unique<CountingConnection>(cube, cancelled);
      stop.Attach(*connection);
      if (run % 2 == 0) std::this_thread::yield();
      stop.Detach();
    } catch (const Failure& failure) {
      told = failure.number() == kQueryCancelled;
    }
    EXPECT_LE(cancelled, 1);  // no lock is needed: nobody reaches a connection that was detached
    other.join();
    EXPECT_TRUE(told || FailureOf([&] { stop.Check(); }).number() == kQueryCancelled);
    EXPECT_THROW(stop.Attach(*std::make_unique<CountingConnection>(cube, cancelled)), Failure);
  }
}

}  // namespace
}  // namespace vok::test
