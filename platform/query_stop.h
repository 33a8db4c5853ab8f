// The wish to end a query that runs: another thread or a signal handler asks, and what runs looks
// whether it was asked.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/failure.h"

namespace vok {

/// The failure of a query that was asked to stop (DB_E_CANCELED).
inline constexpr int32_t kQueryCancelled = -2147217842;

/// One for each run; it outlives the run and all who may ask.
class QueryStop {
 public:
  /// Once asked it stays asked. From any thread and from a signal handler.
  void Ask() { asked_ = true; }
  const std::atomic<bool>& asked() const { return asked_; }

  /// Failure `kQueryCancelled` when the stop was asked.
  void Check() const {
    if (asked_) throw Failure(kQueryCancelled, "The query was stopped before its end.");
  }

 private:
  static_assert(std::atomic<bool>::is_always_lock_free);
  std::atomic<bool> asked_ = false;
};

}  // namespace vok
