#include "providers/cube/olap/build/read_ahead.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace vok::olap {
namespace {

constexpr std::size_t kRowsOfBatch = 2048;
constexpr std::size_t kBatches = 4;

/// Some rows that own their texts.
class Batch {
 public:
  /// Up to `kRowsOfBatch` rows; fewer, or none, are the last ones, or a failure follows them.
  void Fill(TableReader& reader) {
    texts_.clear();
    fields_.clear();
    lines_.clear();
    failure_ = nullptr;
    try {
      while (lines_.size() < kRowsOfBatch && reader.Next()) Add(reader);
    } catch (...) {
      failure_ = std::current_exception();
    }
    done_ = reader.Done();
    const char* text = texts_.data();
    for (Field& field : fields_) {
      field.text = {text, field.text.size()};
      text += field.text.size();
    }
  }

  std::size_t size() const { return lines_.size(); }
  bool IsLast() const { return lines_.size() < kRowsOfBatch; }
  void ThrowFailure() const {
    if (failure_ != nullptr) std::rethrow_exception(failure_);
  }
  std::span<const Field> Fields(std::size_t row) const {
    const std::size_t width = fields_.size() / lines_.size();
    return std::span(fields_).subspan(row * width, width);
  }
  uint64_t Line(std::size_t row) const { return lines_[row]; }
  double done() const { return done_; }

 private:
  void Add(const TableReader& reader) {
    lines_.push_back(reader.Line());
    for (const Field& field : reader.Fields()) {
      texts_.insert(texts_.end(), field.text.begin(), field.text.end());
      fields_.push_back(field);
    }
  }

  std::vector<char> texts_;  // one after the other; stay in place when the batch moves
  std::vector<Field> fields_;
  std::vector<uint64_t> lines_;
  std::exception_ptr failure_;
  double done_ = 0;
};

/// Batches on their way from one thread to the other.
class BatchQueue {
 public:
  void Put(Batch batch) {
    const std::lock_guard lock(mutex_);
    batches_.push_back(std::move(batch));
    changed_.notify_one();
  }
  /// Waits for a batch; nothing once the queue is closed.
  std::optional<Batch> Take() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return closed_ || !batches_.empty(); });
    if (closed_) return std::nullopt;
    Batch batch = std::move(batches_.front());
    batches_.erase(batches_.begin());
    return batch;
  }
  void Close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    changed_.notify_one();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Batch> batches_;
  bool closed_ = false;
};

class AheadReader : public TableReader {
 public:
  explicit AheadReader(std::unique_ptr<TableReader> reader)
      : reader_(std::move(reader)), row_estimate_(reader_->RowEstimate()) {
    for (std::size_t count = 0; count < kBatches; ++count) empty_.Put(Batch());
    thread_ = std::thread([this] { ReadAll(); });
  }
  ~AheadReader() override {
    empty_.Close();
    thread_.join();
  }

  bool Next() override {
    if (++row_ < batch_.size()) return true;
    if (is_last_) {
      batch_.ThrowFailure();
      return false;
    }
    if (is_begun_) empty_.Put(std::move(batch_));
    is_begun_ = true;
    batch_ = *filled_.Take();
    is_last_ = batch_.IsLast();
    row_ = static_cast<std::size_t>(-1);
    return Next();
  }

  std::span<const Field> Fields() const override { return batch_.Fields(row_); }
  std::string PlaceOf(uint64_t line) const override { return reader_->PlaceOf(line); }
  uint64_t Line() const override { return batch_.Line(row_); }
  double Done() const override { return batch_.done(); }
  uint64_t RowEstimate() const override { return row_estimate_; }

 private:
  void ReadAll() {
    bool is_last = false;
    while (!is_last) {
      std::optional<Batch> batch = empty_.Take();
      if (!batch) return;
      batch->Fill(*reader_);
      is_last = batch->IsLast();
      filled_.Put(std::move(*batch));
    }
  }

  std::unique_ptr<TableReader> reader_;  // the thread's, once it runs
  uint64_t row_estimate_;
  BatchQueue empty_;
  BatchQueue filled_;
  Batch batch_;
  std::size_t row_ = 0;
  bool is_begun_ = false;
  bool is_last_ = false;
  std::thread thread_;
};

}  // namespace

std::unique_ptr<TableReader> ReadAhead(std::unique_ptr<TableReader> reader) {
  return std::make_unique<AheadReader>(std::move(reader));
}

}  // namespace vok::olap
