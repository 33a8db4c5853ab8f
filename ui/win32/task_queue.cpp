#include "ui/win32/task_queue.h"

#include <utility>

namespace vok::windows {

TaskQueue::TaskQueue()
    : waiting_(::CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      done_(::CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

void TaskQueue::Ask(const std::function<void()>& task) {
  task_ = &task;
  ::SetEvent(waiting_.get());
  ::WaitForSingleObject(done_.get(), INFINITE);
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void TaskQueue::Run() noexcept {
  try {
    (*task_)();
  } catch (...) {
    failure_ = std::current_exception();
  }
  ::SetEvent(done_.get());
}

}  // namespace vok::windows
