// Putting sorted runs of facts together.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "providers/cube/olap/build/fact_run.h"

namespace vok::olap {

/// Facts whose keys lie between two limits, sorted.
template <typename Key>
struct FactRange {
  uint64_t first_row = 0;  ///< of all facts
  std::vector<Key> keys;
  std::vector<ValueColumn> values;
};

/// Every 256th key of a run is in its sample.
inline constexpr std::size_t kRowsOfSample = 256;

/// Sorted runs, wherever they are kept. Several threads may read them at once.
template <typename Key>
class FactRuns {
 public:
  virtual ~FactRuns() = default;
  /// Of all runs together.
  virtual std::vector<Key> Sample() const = 0;
  /// Appends the facts from `begin` on, and less than `end`, run by run; null: no limit. Their
  /// values are of one kind and scale everywhere.
  virtual void Append(const Key* begin, const Key* end, FactRange<Key>& range) const = 0;
};

/// Those in memory, whose values are of one kind and scale.
template <typename Key>
class RunsInMemory : public FactRuns<Key> {
 public:
  explicit RunsInMemory(std::vector<FactRun<Key>> runs) : runs_(std::move(runs)) {}
  std::vector<Key> Sample() const override;
  void Append(const Key* begin, const Key* end, FactRange<Key>& range) const override;

 private:
  std::vector<FactRun<Key>> runs_;
};

/// Whether facts with equal keys can be put together, and nothing is lost. `formats`: what the
/// values of all runs have in common.
bool CanJoin(const FactPlan& plan, const std::vector<ValueFormat>& formats);

/// Gives all facts to `take`, on the caller's thread, in the order of their keys, those with equal
/// keys in the order of the runs, or put together where `join` says so.
template <typename Key>
void MergeRuns(const FactPlan& plan, const FactRuns<Key>& runs, bool join, unsigned threads,
               const std::function<void(FactRange<Key>)>& take);

}  // namespace vok::olap
