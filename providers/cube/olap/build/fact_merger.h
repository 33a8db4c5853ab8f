// Putting sorted runs of facts together.
#pragma once

#include <cstdint>
#include <span>
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

/// All facts in the order of their keys, those with equal keys in the order of the runs: put
/// together where that loses nothing. `formats`: what the values of the runs have in common.
template <typename Key>
std::vector<FactRange<Key>> MergeRuns(const FactPlan& plan, std::vector<FactRun<Key>> runs,
                                      const std::vector<ValueFormat>& formats, unsigned threads);

}  // namespace vok::olap
