#include "cli/run_jobs.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>

#include "cli/terminal.h"

namespace vok::cli {
namespace {

/// What a run has to say is in its outcome. Nobody is there to answer a question.
class SilentMessageBoxes : public MessageBoxes {
 public:
  MessageAnswer Show(const MessageBox& box) override {
    return box.buttons == MessageButtons::kOk ? MessageAnswer::kOk : MessageAnswer::kNo;
  }
};

/// The runs that are left, and the threads that take them.
class Crew {
 public:
  Crew(const Jobs& jobs, QueryStop& stop) : jobs_(jobs), stop_(stop) {}

  void Work() {
    try {
      SilentMessageBoxes boxes;
      const auto session = jobs_.new_session(boxes);
      for (std::size_t i = next_++; i < jobs_.requests.size(); i = next_++) {
        const RunOutcome outcome = RunSaved(*session, jobs_.requests[i], jobs_.limits, stop_);
        const std::lock_guard lock(mutex_);
        jobs_.ended(outcome);
      }
    } catch (...) {
      const std::lock_guard lock(mutex_);
      if (!failed_) failed_ = std::current_exception();
      next_ = jobs_.requests.size();
      stop_.Ask();
    }
  }

  void ThrowFailure() const {
    if (failed_) std::rethrow_exception(failed_);
  }

 private:
  const Jobs& jobs_;
  QueryStop& stop_;
  std::atomic<std::size_t> next_ = 0;
  std::mutex mutex_;
  std::exception_ptr failed_;
};

std::size_t ThreadCount(const Jobs& jobs) {
  constexpr std::size_t kForEachCore = 4;
  const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
  const std::size_t most = jobs.threads > 0 ? jobs.threads : kForEachCore * cores;
  return std::min(most, jobs.requests.size());
}

}  // namespace

void RunJobs(const Jobs& jobs, QueryStop& stop) {
  Crew crew(jobs, stop);
  std::vector<std::jthread> threads;
  try {
    while (threads.size() < ThreadCount(jobs)) {
      threads.emplace_back([&] { WorkOnThread([&] { crew.Work(); }); });
    }
  } catch (const std::system_error&) {  // as many as the system gives
  }
  if (threads.empty()) crew.Work();
  Await(threads);
  crew.ThrowFailure();
}

}  // namespace vok::cli
