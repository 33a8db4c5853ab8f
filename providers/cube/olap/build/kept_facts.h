// The facts of a cube file that stay when others are read anew.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "providers/cube/olap/build/cube_record.h"
#include "providers/cube/olap/build/fact_run.h"
#include "providers/cube/olap/storage/fact_store.h"

namespace vok::olap {

struct KeptFacts {
  /// In place of the number of a leaf.
  static constexpr uint32_t kReadAnew = 0xFFFFFFFF;  ///< facts of this period are left out
  static constexpr uint32_t kUnknown = 0xFFFFFFFE;   ///< facts here are a failure

  const FactRows* rows = nullptr;
  uint32_t time = 0;  ///< the hierarchy with leaves that are read anew
  /// Of each hierarchy and each of its leaves in the file, the leaf that stands for it now.
  std::vector<std::vector<uint32_t>> leaves;
  std::vector<PeriodTotals> totals;  ///< of what stays, by the leaves of time as they are now
  /// What is wrong with facts in a leaf that is not known any more, which is the file's.
  std::function<Failure(uint32_t hierarchy, uint32_t leaf)> unknown;
};

/// The facts that stay of `count` rows from `first` on, sorted. Several threads may read.
template <typename Key>
FactRun<Key> ReadKept(const FactPlan& plan, const KeptFacts& kept, uint64_t first,
                      std::size_t count);

/// Which leaves of a hierarchy have facts that stay.
std::vector<bool> UsedLeaves(const KeptFacts& kept, uint32_t hierarchy);

}  // namespace vok::olap
