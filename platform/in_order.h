// Work on several threads whose results come one after the other, as if one thread had done it.
//
// The caller's thread is one of them: it does what the others have not begun when it would have to
// wait. A thread that the system does not start is done without.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace vok {

/// What is to be done with a result.
using Taking = std::function<void()>;
/// Makes a result.
using Working = std::function<Taking()>;

/// How many threads can run at once, at least 1.
unsigned ProcessorCount();

/// Works are done on any thread, what they return is called in their order, on the caller's thread.
/// A failure of either comes when all before it is taken; nothing more is begun then, and each
/// later call fails in the same way.
class OrderedWorks {
 public:
  /// `threads`: how many may work, at least 1. Others than the caller's start when there is more
  /// than one work.
  explicit OrderedWorks(unsigned threads) : threads_(threads) {}
  OrderedWorks(const OrderedWorks&) = delete;
  OrderedWorks& operator=(const OrderedWorks&) = delete;
  /// Drops what is not begun yet.
  ~OrderedWorks();

  /// Takes what is made of the works before. Two works for each thread may wait to be taken.
  void Add(Working working);
  /// All works are taken.
  void Finish();

 private:
  struct Work {
    Working working;
    Taking taking = nullptr;
    std::exception_ptr failure = nullptr;
    bool is_done = false;
  };
  using Lock = std::unique_lock<std::mutex>;

  void StartThread() noexcept;
  void Help();
  /// Does the next work that nobody has begun. The lock is free meanwhile.
  void DoOne(Lock& lock);
  void TakeDone(Lock& lock);
  /// Does, waits for and takes works until so many are left.
  void WorkDownTo(std::size_t left, Lock& lock);
  bool HasOpen() const { return !is_ended_ && begun_ < works_.size(); }
  bool FirstIsDone() const { return !works_.empty() && works_.front()->is_done; }

  unsigned threads_;
  std::vector<std::thread> helpers_;
  std::mutex mutex_;
  std::condition_variable open_;
  std::condition_variable done_;
  std::deque<std::unique_ptr<Work>> works_;  // in order, until they are taken
  std::size_t begun_ = 0;                    // of them, from the front
  std::exception_ptr failure_;
  bool is_ended_ = false;  // nothing more is begun
};

/// Does the works that `begin` gives, an empty one after the last. It is called on the caller's
/// thread; its failure comes as that of a work would.
void RunInOrder(unsigned threads, const std::function<Working()>& begin);

/// `work` of every number below `count`, in no order.
void InParallel(unsigned threads, std::size_t count, const std::function<void(std::size_t)>& work);

}  // namespace vok
