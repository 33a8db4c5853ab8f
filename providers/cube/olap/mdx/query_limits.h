// How far one query may go, and the watch over it.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>

#include "platform/query_stop.h"
#include "providers/cube/olap/mdx/source_text.h"

namespace vok::olap {

/// No answer has more cells, before NON EMPTY.
inline constexpr std::size_t kMaxCells = 50'000'000;
/// No query takes more memory, in bytes, for its sets, its cells and what it keeps of them.
inline constexpr std::size_t kMaxMemory = std::size_t{1} << 30;
/// No set grows beyond this many tuples.
inline constexpr std::size_t kMaxTuples = 20'000'000;

struct QueryLimits {
  std::size_t max_cells = kMaxCells;  ///< of the answer, before NON EMPTY, and tuples of any set
  std::size_t max_memory = kMaxMemory;
  double timeout_seconds = 0;       ///< 0: none
  const QueryStop* stop = nullptr;  ///< ends the query from outside
};

/// Failures: -2147217871 past the time limit, `kQueryCancelled` when it was asked to stop.
class QueryGuard {
 public:
  explicit QueryGuard(const QueryLimits& limits);

  std::size_t max_cells() const { return limits_.max_cells; }
  std::size_t max_tuples() const { return std::min(limits_.max_cells, kMaxTuples); }
  /// Failure -2147217900 at `place` when a set grows beyond the limit.
  void CheckTuples(std::size_t count, Place place) const;
  /// To be called where work goes on for long: once for every thousand cells or so.
  void Check() const;
  /// The same at step `i` of a loop: looks up once in so many steps.
  void CheckAt(std::size_t i) const {
    if (i % kStepsUnchecked == 0) Check();
  }

 private:
  static constexpr std::size_t kStepsUnchecked = 4096;
  using Clock = std::chrono::steady_clock;

  QueryLimits limits_;
  Clock::time_point deadline_;
};

}  // namespace vok::olap
