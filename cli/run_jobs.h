// Many runs in one call of the program.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cli/run_outcome.h"

namespace vok::cli {

struct Jobs {
  std::vector<RunRequest> requests;
  std::string limits;
  std::size_t threads = 0;  ///< at most; 0: four for each core, as most wait for the disk
  /// Makes the session of one thread, with messages of its own.
  std::function<std::unique_ptr<Session>(MessageBoxes& boxes)> new_session;
  /// Called with each outcome as it ends, by one thread at a time.
  std::function<void(const RunOutcome&)> ended;
};

/// Runs all of them on so many threads, the caller's among them; one that fails stops no other.
/// After a stop those that have not begun end as stopped. What `ended` throws stops the rest and is
/// thrown on.
void RunJobs(const Jobs& jobs, QueryStop& stop);

}  // namespace vok::cli
