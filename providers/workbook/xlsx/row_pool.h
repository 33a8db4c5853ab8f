// Encodes blocks of rows on several threads at once and hands them on in their order.
//
// The caller's thread is one of them: it encodes what the others have not begun when it would have
// to wait. Where no thread can be started it does all of the work. What comes out does not depend
// on how many there are.
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

#include "platform/spreadsheet.h"
#include "providers/workbook/xlsx/row_encoder.h"

namespace vok::xlsx {

/// As many as the machine has cores for, and 4 at most.
unsigned UsualThreads();

class RowPool {
 public:
  using Sink = std::function<void(const EncodedRows&)>;

  /// `sink` is called on the caller's thread. `threads`: how many may work, the caller's included.
  RowPool(Sink sink, unsigned threads) : sink_(std::move(sink)), threads_(threads) {}
  RowPool(const RowPool&) = delete;
  RowPool& operator=(const RowPool&) = delete;
  /// Drops what is not encoded yet.
  ~RowPool();

  /// The styles stay until the block is encoded. Failures are those of the sink and of encoding
  /// this block or one before; each later call fails in the same way.
  void Add(CellBlock cells, const RowPlace& place);
  /// All blocks are in the sink.
  void Finish();

 private:
  struct Job {
    CellBlock cells;
    RowPlace place;
    EncodedRows rows = {};
    std::exception_ptr failure = nullptr;
    bool done = false;
  };

  void StartThread() noexcept;
  void Work();
  /// Encodes the next block that nobody has begun. The lock is free meanwhile.
  void EncodeOne(RowEncoder& encoder, std::unique_lock<std::mutex>& lock);
  bool HasOpen() const { return begun_ < jobs_.size(); }
  bool FirstIsDone() const { return !jobs_.empty() && jobs_.front()->done; }
  void HandOn(std::unique_lock<std::mutex>& lock);

  Sink sink_;
  unsigned threads_;
  RowEncoder encoder_;  // of the caller's thread
  std::vector<std::thread> workers_;
  std::mutex mutex_;
  std::condition_variable work_;
  std::condition_variable done_;
  std::deque<std::unique_ptr<Job>> jobs_;  // in order, until they are handed on
  std::size_t begun_ = 0;                  // of them, from the front
  std::exception_ptr failure_;
  bool closing_ = false;
};

}  // namespace vok::xlsx
