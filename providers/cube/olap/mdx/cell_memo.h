// Cells that were computed before: a formula that needs another one at the same place again finds
// it here, so that formulas that need one another do not double the work at every step.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "providers/cube/olap/mdx/expression.h"

namespace vok::olap {

class CellMemo {
 public:
  /// What was computed, and how many steps deep that went.
  struct Computed {
    Column cells;
    uint32_t depth = 0;
  };

  /// nullptr: not computed, or forgotten. Stays until the next call.
  const Computed* Find(const Block& block) const;
  /// Forgets all others first when they have grown large.
  void Keep(const Block& block, Computed computed);
  void Clear();

 private:
  struct Kept {
    std::vector<MemberId> members;
    std::vector<const LeafRanges*> regions;
    HierarchyId varying;
    MemberIds ids;
    Computed computed;
  };

  static bool IsAt(const Kept& kept, const Block& block);

  std::unordered_multimap<uint64_t, Kept> kept_;  ///< by a hash of the place
  std::size_t kept_values_ = 0;
};

}  // namespace vok::olap
