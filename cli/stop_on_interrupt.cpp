#include "cli/stop_on_interrupt.h"

#include <atomic>
#include <thread>

namespace vok::cli {
namespace {

/// The stop of the query that runs, as long as it is there. Who uses it neither locks nor waits, so
/// a signal handler may; it must not be what withdraws.
class Running {
 public:
  void Publish(QueryStop& stop) { stop_ = &stop; }

  /// Returns when nobody uses the stop any more.
  void Withdraw() {
    stop_ = nullptr;
    while (users_ != 0) std::this_thread::yield();
  }

  template <typename Action>
  void Use(const Action& use) {
    ++users_;  // before the look at the stop: `Withdraw` looks in the other order
    if (QueryStop* stop = stop_) use(*stop);
    --users_;
  }

 private:
  static_assert(std::atomic<QueryStop*>::is_always_lock_free &&
                std::atomic<int>::is_always_lock_free);
  std::atomic<QueryStop*> stop_ = nullptr;
  std::atomic<int> users_ = 0;
};

Running running;
std::atomic<bool> asked = false;

}  // namespace

StopOnInterrupt::StopOnInterrupt(QueryStop& stop) {
  asked = false;
  running.Publish(stop);
}

StopOnInterrupt::~StopOnInterrupt() { running.Withdraw(); }

bool AskToStop() {
  bool is_first = false;
  running.Use([&is_first](QueryStop& stop) {
    is_first = !asked.exchange(true);
    if (is_first) stop.Ask();
  });
  return is_first;
}

}  // namespace vok::cli
