// What happens in a process beside the test's.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>

#include "tests/support/failures.h"

namespace vok::test {

/// Starts a process for the action; its status is 0 when that ends without a failure.
inline pid_t Start(const std::function<void()>& action) {
  const pid_t child = ::fork();
  if (child != 0) return child;
  const Failure failure = FailureOf(action);
  if (failure.number() != 0) std::fprintf(stderr, "%s\n", failure.what());
  ::_exit(failure.number() == 0 ? 0 : 1);
}

/// Waits for its end; -1 for a process that was killed.
inline int StatusOf(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace vok::test
