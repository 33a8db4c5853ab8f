#include "providers/facts/clickhouse/streamed_rows.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace vok::clickhouse {
namespace {

constexpr std::size_t kPiece = std::size_t{2} << 20;
constexpr std::size_t kMostReady = 4;
constexpr std::size_t kMostWords = 4096;
constexpr long kOk = 200;

/// Where the last whole row begins; 0 where there is at most one.
std::size_t LastRow(std::string_view text) {
  const std::size_t end = text.rfind('\n');
  if (end == std::string_view::npos || end == 0) return 0;
  const std::size_t before = text.rfind('\n', end - 1);
  return before == std::string_view::npos ? 0 : before + 1;
}

/// A server that fails in the middle of its answer writes why in the place of a row.
bool IsFailureText(std::string_view row) {
  return row.starts_with("Code: ") && row.find("DB::Exception") != std::string_view::npos;
}

}  // namespace

StreamedRows::StreamedRows(Request request, FailureOf failure_of, std::function<void()> give_up,
                           double guess, const QueryStop& stop, const std::function<void()>* check)
    : request_(std::move(request)),
      failure_of_(std::move(failure_of)),
      give_up_(std::move(give_up)),
      guess_(guess),
      stop_(stop),
      check_(check),
      thread_([this] { Run(); }) {}

StreamedRows::~StreamedRows() {
  own_stop_.Ask();
  changed_.notify_all();
  thread_.join();
  if (failure_ != nullptr) give_up_();
}

bool StreamedRows::Next(std::string& text) {
  constexpr std::chrono::milliseconds kLookEvery{200};
  std::unique_lock lock(mutex_);
  while (ready_.empty() && !is_done_) {
    changed_.wait_for(lock, kLookEvery);
    if (stop_.asked()) own_stop_.Ask();
    if (check_ != nullptr && *check_) (*check_)();
  }
  if (ready_.empty() && failure_ != nullptr) std::rethrow_exception(failure_);
  if (ready_.empty()) return false;
  text = std::move(ready_.front());
  ready_.pop_front();
  changed_.notify_all();
  return true;
}

void StreamedRows::Run() {
  std::exception_ptr failure;
  try {
    Finish(request_(own_stop_, *this));
  } catch (...) {
    failure = std::current_exception();
  }
  const std::lock_guard lock(mutex_);
  failure_ = failure;
  is_done_ = true;
  changed_.notify_all();
}

void StreamedRows::Take(const HttpHead& head, std::string_view piece) {
  if (head.status != kOk) {
    words_.append(piece.substr(0, kMostWords - std::min(words_.size(), kMostWords)));
    return;
  }
  rest_.append(piece);
  if (rest_.size() < kPiece) return;
  const std::size_t end = LastRow(rest_);
  if (end == 0) return;
  std::string rows = rest_.substr(0, end);
  rest_.erase(0, end);
  Give(std::move(rows));
}

void StreamedRows::Finish(const HttpHead& head) {
  if (head.status != kOk) throw failure_of_(head, words_);
  const std::size_t last = LastRow(rest_);
  if (IsFailureText(std::string_view(rest_).substr(last))) {
    throw failure_of_(head, rest_.substr(last, kMostWords));
  }
  if (!rest_.empty()) Give(std::move(rest_));
}

void StreamedRows::Give(std::string rows) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return ready_.size() < kMostReady || own_stop_.asked(); });
  own_stop_.Check();
  ready_.push_back(std::move(rows));
  changed_.notify_all();
}

}  // namespace vok::clickhouse
