// Lets a query end while it reads: calls its check once in so many rows.
#pragma once

#include <cstdint>
#include <functional>

namespace vok::olap {

class CancelCheck {
 public:
  /// `check` may be empty; it outlives the watch.
  explicit CancelCheck(const std::function<void()>& check) : check_(check) {}

  /// Throws what the check throws.
  void Count(uint64_t rows) {
    unchecked_ += rows;
    if (unchecked_ < kRowsUnchecked) return;
    unchecked_ = 0;
    if (check_) check_();
  }

 private:
  static constexpr uint64_t kRowsUnchecked = 65536;

  const std::function<void()>& check_;
  uint64_t unchecked_ = 0;
};

}  // namespace vok::olap
