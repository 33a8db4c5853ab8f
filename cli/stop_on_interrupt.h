// Ctrl-C, and what else asks the program to end, while a query runs.
#pragma once

#include "platform/query_stop.h"

namespace vok::cli {

/// While it lives, the first interrupt asks the query to stop; a second one ends the program, as
/// any does without it. One at a time.
class StopOnInterrupt {
 public:
  explicit StopOnInterrupt(QueryStop& stop);
  ~StopOnInterrupt();
  StopOnInterrupt(const StopOnInterrupt&) = delete;
  StopOnInterrupt& operator=(const StopOnInterrupt&) = delete;
};

/// Asks the query that runs to stop; false when there is none, or it was asked before.
bool AskToStop();

}  // namespace vok::cli
