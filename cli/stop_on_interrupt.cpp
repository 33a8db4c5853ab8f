#include "cli/stop_on_interrupt.h"

#include <csignal>

namespace vok::cli {
namespace {

Published<QueryStop> interrupted;

void Ask(int) {
  std::signal(SIGINT, SIG_DFL);
  interrupted.Use([](QueryStop& stop) { stop.Ask(); });
}

}  // namespace

StopOnInterrupt::StopOnInterrupt(QueryStop& stop) {
  interrupted.Publish(stop);
  before_ = std::signal(SIGINT, Ask);
  if (before_ == SIG_IGN) std::signal(SIGINT, SIG_IGN);
}

StopOnInterrupt::~StopOnInterrupt() {
  std::signal(SIGINT, before_);
  interrupted.Withdraw();
}

}  // namespace vok::cli
