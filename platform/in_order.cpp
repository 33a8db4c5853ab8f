#include "platform/in_order.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace vok {
namespace {

class Crew {
 public:
  Crew(unsigned threads, const std::function<Working()>& begin)
      : begin_(begin), results_(std::size_t{2} * threads) {}
  ~Crew() {
    {
      const std::lock_guard lock(mutex_);
      is_ended_ = true;
    }
    changed_.notify_all();
    for (std::thread& thread : helpers_) thread.join();
  }
  Crew(const Crew&) = delete;
  Crew& operator=(const Crew&) = delete;

  void StartHelpers(unsigned count) {
    try {
      while (helpers_.size() < count) helpers_.emplace_back([this] { Help(); });
    } catch (const std::system_error&) {  // those that run do the work
    }
  }

  void TakeAll() {
    std::unique_lock lock(mutex_);
    for (;;) {
      if (ResultOf(taken_).is_made) {
        const Result result = std::exchange(ResultOf(taken_), {});
        lock.unlock();
        if (result.failure != nullptr) std::rethrow_exception(result.failure);
        result.taking();
        lock.lock();
        ++taken_;
        changed_.notify_all();
      } else if (MayBegin()) {
        lock.unlock();
        DoNext();
        lock.lock();
      } else if (taken_ == begun_) {
        return;
      } else {
        changed_.wait(lock);
      }
    }
  }

 private:
  struct Result {
    Taking taking;
    std::exception_ptr failure;
    bool is_made = false;
  };

  Result& ResultOf(uint64_t number) { return results_[number % results_.size()]; }
  bool MayBegin() const { return !is_ended_ && begun_ - taken_ < results_.size(); }

  void Help() {
    std::unique_lock lock(mutex_);
    for (;;) {
      changed_.wait(lock, [this] { return is_ended_ || MayBegin(); });
      if (is_ended_) return;
      lock.unlock();
      DoNext();
      lock.lock();
    }
  }

  void DoNext() {
    Working working;
    Result result;
    uint64_t number = 0;
    {
      const std::lock_guard turn(begin_mutex_);
      if (!IsMyTurn()) return;
      try {
        working = begin_();
      } catch (...) {
        result.failure = std::current_exception();
      }
      const std::lock_guard lock(mutex_);
      is_ended_ = is_ended_ || !working;
      if (!working && result.failure == nullptr) {
        changed_.notify_all();
        return;
      }
      number = begun_++;
    }
    if (working) result = Do(working);
    const std::lock_guard lock(mutex_);
    is_ended_ = is_ended_ || result.failure != nullptr;
    result.is_made = true;
    ResultOf(number) = std::move(result);
    changed_.notify_all();
  }

  /// Another thread may have begun the last one meanwhile.
  bool IsMyTurn() {
    const std::lock_guard lock(mutex_);
    return MayBegin();
  }

  static Result Do(const Working& working) {
    try {
      return {working(), nullptr, false};
    } catch (...) {
      return {{}, std::current_exception(), false};
    }
  }

  const std::function<Working()>& begin_;
  std::mutex begin_mutex_;  // held while `begin_` runs; taken before `mutex_`
  std::mutex mutex_;        // guards what follows
  std::condition_variable changed_;
  std::vector<Result> results_;  // made and not taken yet; each has its place by its number
  uint64_t begun_ = 0;
  uint64_t taken_ = 0;
  bool is_ended_ = false;  // nothing more is begun
  std::vector<std::thread> helpers_;
};

}  // namespace

unsigned ProcessorCount() { return std::max(1U, std::thread::hardware_concurrency()); }

void RunInOrder(unsigned threads, const std::function<Working()>& begin) {
  Crew crew(threads, begin);
  crew.StartHelpers(threads - 1);
  crew.TakeAll();
}

void InParallel(unsigned threads, std::size_t count, const std::function<void(std::size_t)>& work) {
  std::size_t next = 0;
  RunInOrder(threads, [&]() -> Working {
    if (next == count) return {};
    return [&work, number = next++]() -> Taking {
      work(number);
      return [] {};
    };
  });
}

}  // namespace vok
