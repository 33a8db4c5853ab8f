// Which result of a query every leaf counts for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "providers/cube/olap/storage/leaf_levels.h"

namespace vok::olap {

/// Leaves of damaged facts, which there are not, fall into a group that is not listed.
class Grouping {
 public:
  /// All in one group.
  Grouping() = default;
  /// One group for each member of the level.
  Grouping(const LeafLevels& levels, uint32_t hierarchy, uint32_t level);

  const std::optional<uint32_t>& hierarchy() const { return hierarchy_; }
  /// Groups that are listed, and those that a leaf may fall into.
  std::size_t count() const { return count_; }
  std::size_t slots() const { return slots_; }

  uint32_t GroupOf(uint32_t leaf) const {
    return group_of_leaf_.empty() ? leaf : group_of_leaf_[leaf];
  }
  /// Replaces each leaf of the hierarchy by its group.
  void Map(std::span<uint32_t> leaves) const;

 private:
  std::optional<uint32_t> hierarchy_;
  std::size_t count_ = 1;
  std::size_t slots_ = 1;
  uint32_t leaf_count_ = 0;
  std::vector<uint32_t> group_of_leaf_;  // empty: each leaf is its own group
};

}  // namespace vok::olap
