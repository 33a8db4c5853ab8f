// Ctrl-C while a query runs.
#pragma once

#include "cube/query_stop.h"

namespace vok::cli {

/// While it lives, Ctrl-C asks the query to stop, and a second one ends the program. Where
/// interrupts are ignored they stay so. One at a time.
class StopOnInterrupt {
 public:
  explicit StopOnInterrupt(QueryStop& stop);
  ~StopOnInterrupt();
  StopOnInterrupt(const StopOnInterrupt&) = delete;
  StopOnInterrupt& operator=(const StopOnInterrupt&) = delete;

 private:
  void (*before_)(int);
};

}  // namespace vok::cli
