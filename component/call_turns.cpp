#include "component/call_turns.h"

#include <semaphore>
#include <utility>

#include "platform/failure.h"

namespace vok {
namespace {

class StandStill : public TurnSignal {
 public:
  void Wait() override { given_.acquire(); }
  void Give() override { given_.release(); }

 private:
  std::binary_semaphore given_{0};
};

}  // namespace

CallTurns::CallTurns(NewTurnSignal new_signal) : new_signal_(std::move(new_signal)) {
  if (!new_signal_) new_signal_ = [] { return std::make_unique<StandStill>(); };
}

void CallTurns::Take() {
  const auto self = std::this_thread::get_id();
  const std::shared_ptr<TurnSignal> signal = new_signal_();
  {
    const std::lock_guard lock(mutex_);
    if (calling_.contains(self)) {
      throw Failure(kOwnCallInProgress,
                    "An earlier call of this thread is still in progress: its window or message "
                    "is open, or it waits for another thread's call. Call again when it is over.");
    }
    calling_.insert(self);
    if (calling_.size() == 1) return;
    waiting_.push_back(signal);
  }
  signal->Wait();
}

void CallTurns::End() noexcept {
  std::shared_ptr<TurnSignal> next;
  {
    const std::lock_guard lock(mutex_);
    calling_.erase(std::this_thread::get_id());
    if (waiting_.empty()) return;
    next = std::move(waiting_.front());
    waiting_.pop_front();
  }
  next->Give();
}

}  // namespace vok
