// One call at a time: the order in which the threads of a process use its `Publics`.
//
// A call that finds another thread's call in progress waits for it; calls go on in the order in
// which they came. A call on a thread whose own call has not returned would wait for itself: it
// comes from a window or message box that is open there, or from a timer or event that a waiting
// call lets through. It fails at once.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

namespace vok {

/// The number of that failure.
inline constexpr int32_t kOwnCallInProgress = 6666;

/// How one call waits for its turn.
class TurnSignal {
 public:
  virtual ~TurnSignal() = default;
  /// On the waiting thread: returns when the turn is given.
  virtual void Wait() = 0;
  /// On another thread, once.
  virtual void Give() = 0;
};
using NewTurnSignal = std::function<std::unique_ptr<TurnSignal>()>;

class CallTurns {
 public:
  /// The threads stand still while they wait, where `new_signal` does not give them another way.
  explicit CallTurns(NewTurnSignal new_signal = {});
  CallTurns(const CallTurns&) = delete;
  CallTurns& operator=(const CallTurns&) = delete;

 private:
  friend class CallTurn;
  void Take();
  void End() noexcept;

  NewTurnSignal new_signal_;
  std::mutex mutex_;
  std::set<std::thread::id> calling_;  ///< has the turn, or waits for it
  std::deque<std::shared_ptr<TurnSignal>> waiting_;
};

/// A call's turn, while it lives. Failure 6666 on a thread whose own call is in progress.
class CallTurn {
 public:
  /// nullptr: nobody else uses the values.
  explicit CallTurn(CallTurns* turns) : turns_(turns) {
    if (turns_ != nullptr) turns_->Take();
  }
  CallTurn(const CallTurn&) = delete;
  CallTurn& operator=(const CallTurn&) = delete;
  ~CallTurn() {
    if (turns_ != nullptr) turns_->End();
  }

 private:
  CallTurns* turns_;
};

}  // namespace vok
