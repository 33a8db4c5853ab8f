// What a thread beside that of the windows asks the latter to do for it.
#pragma once

#include <exception>
#include <functional>

#include "system/windows/system_error.h"

namespace vok::windows {

/// TaskQueue of one worker thread, one at a time.
class TaskQueue {
 public:
  TaskQueue();

  /// On the worker thread: has the task run and waits for its end, with its failure if it has
  /// one.
  void Ask(const std::function<void()>& task);

  /// Signalled when an task waits.
  HANDLE Waiting() const { return waiting_.get(); }
  /// On the thread of the windows: runs the task that waits.
  void Run() noexcept;

 private:
  Handle waiting_;
  Handle done_;
  const std::function<void()>* task_ = nullptr;
  std::exception_ptr failure_;
};

}  // namespace vok::windows
