#include "cli/stop_on_interrupt.h"

#include <atomic>

namespace vok::cli {
namespace {

Published<QueryStop> running;
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
