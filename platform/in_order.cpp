#include "platform/in_order.h"

#include <algorithm>
#include <utility>

namespace vok {

unsigned ProcessorCount() { return std::max(1U, std::thread::hardware_concurrency()); }

OrderedWorks::~OrderedWorks() {
  {
    const std::lock_guard lock(mutex_);
    is_ended_ = true;
  }
  open_.notify_all();
  for (std::thread& helper : helpers_) helper.join();
}

void OrderedWorks::StartThread() noexcept {
  try {
    helpers_.reserve(helpers_.size() + 1);
    helpers_.emplace_back([this] { Help(); });
  } catch (const std::exception&) {  // the others do its work
    threads_ = static_cast<unsigned>(helpers_.size()) + 1;
  }
}

void OrderedWorks::Help() {
  Lock lock(mutex_);
  while (true) {
    open_.wait(lock, [this] { return is_ended_ || HasOpen(); });
    if (is_ended_) return;
    DoOne(lock);
  }
}

void OrderedWorks::DoOne(Lock& lock) {
  Work& work = *works_[begun_++];
  lock.unlock();
  try {
    work.taking = work.working();
    work.working = nullptr;
  } catch (...) {
    work.failure = std::current_exception();
  }
  lock.lock();
  work.is_done = true;
  is_ended_ = is_ended_ || work.failure != nullptr;
  done_.notify_one();
}

void OrderedWorks::TakeDone(Lock& lock) {
  while (failure_ == nullptr && FirstIsDone()) {
    const std::unique_ptr<Work> work = std::move(works_.front());
    works_.pop_front();
    --begun_;
    failure_ = work->failure;
    if (failure_ != nullptr) break;
    lock.unlock();
    try {
      work->taking();
    } catch (...) {
      failure_ = std::current_exception();
    }
    lock.lock();
  }
  if (failure_ == nullptr) return;
  is_ended_ = true;
  std::rethrow_exception(failure_);
}

void OrderedWorks::WorkDownTo(std::size_t left, Lock& lock) {
  while (works_.size() > left) {
    if (HasOpen()) {
      DoOne(lock);
    } else {
      done_.wait(lock, [this] { return FirstIsDone(); });
    }
    TakeDone(lock);
  }
}

void OrderedWorks::Add(Working working) {
  auto work = std::make_unique<Work>(Work{std::move(working)});
  Lock lock(mutex_);
  works_.push_back(std::move(work));
  if (works_.size() > 1 && helpers_.size() + 1 < threads_) StartThread();
  open_.notify_one();
  TakeDone(lock);
  // As many may wait as keep the others busy while the next one comes.
  WorkDownTo(threads_ == 1 ? 0 : 2 * helpers_.size() + 1, lock);
}

void OrderedWorks::Finish() {
  Lock lock(mutex_);
  TakeDone(lock);
  WorkDownTo(0, lock);
}

void RunInOrder(unsigned threads, const std::function<Working()>& begin) {
  OrderedWorks works(threads);
  while (true) {
    Working working;
    try {
      working = begin();
    } catch (...) {
      works.Finish();
      throw;
    }
    if (!working) return works.Finish();
    works.Add(std::move(working));
  }
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
