#include "providers/workbook/xlsx/row_pool.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace vok::xlsx {
namespace {

constexpr unsigned kMostThreads = 4;

}  // namespace

unsigned UsualThreads() {
  return std::clamp(std::thread::hardware_concurrency(), 1U, kMostThreads);
}

RowPool::~RowPool() {
  {
    const std::lock_guard lock(mutex_);
    closing_ = true;
  }
  work_.notify_all();
  for (std::thread& worker : workers_) worker.join();
}

void RowPool::StartThread() noexcept {
  try {
    workers_.reserve(workers_.size() + 1);
    workers_.emplace_back([this] { Work(); });
  } catch (const std::exception&) {  // the others do its work
    threads_ = 1;
  }
}

void RowPool::Work() {
  RowEncoder encoder;
  std::unique_lock lock(mutex_);
  while (true) {
    work_.wait(lock, [this] { return closing_ || HasOpen(); });
    if (closing_) return;
    EncodeOne(encoder, lock);
  }
}

void RowPool::EncodeOne(RowEncoder& encoder, std::unique_lock<std::mutex>& lock) {
  Job& job = *jobs_[begun_++];
  lock.unlock();
  try {
    job.rows = encoder.Encode(job.cells, job.place);
    job.cells = {};
  } catch (...) {
    job.failure = std::current_exception();
  }
  lock.lock();
  job.done = true;
  done_.notify_one();
}

void RowPool::HandOn(std::unique_lock<std::mutex>& lock) {
  while (failure_ == nullptr && FirstIsDone()) {
    const std::unique_ptr<Job> job = std::move(jobs_.front());
    jobs_.pop_front();
    --begun_;
    failure_ = job->failure;
    if (failure_ != nullptr) break;
    lock.unlock();
    try {
      sink_(job->rows);
    } catch (...) {
      failure_ = std::current_exception();
    }
    lock.lock();
  }
  if (failure_ != nullptr) std::rethrow_exception(failure_);
}

void RowPool::Add(CellBlock cells, const RowPlace& place) {
  auto job = std::make_unique<Job>(Job{std::move(cells), place});
  std::unique_lock lock(mutex_);
  jobs_.push_back(std::move(job));
  if (jobs_.size() > 1 && workers_.size() + 1 < threads_) StartThread();
  work_.notify_one();
  HandOn(lock);
  // As many may wait as keep the others busy while the next block comes.
  while (jobs_.size() > 2 * workers_.size() && HasOpen()) {
    EncodeOne(encoder_, lock);
    HandOn(lock);
  }
}

void RowPool::Finish() {
  std::unique_lock lock(mutex_);
  while (!jobs_.empty()) {
    if (HasOpen()) {
      EncodeOne(encoder_, lock);
    } else {
      done_.wait(lock, [this] { return FirstIsDone(); });
    }
    HandOn(lock);
  }
}

}  // namespace vok::xlsx
