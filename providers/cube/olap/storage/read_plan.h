// How to answer a query: from which stored aggregates, and what is left for the facts themselves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "providers/cube/olap/storage/cuboids.h"
#include "providers/cube/olap/storage/leaf_levels.h"

namespace vok::olap {

/// Which result of a query every leaf counts for. Leaves of damaged facts, which there are not,
/// fall into a group that is not listed.
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

/// For each hierarchy the leaves that take part; no ranges: all of them.
using LeafSlice = std::vector<std::vector<IdRange>>;

/// Combinations of a cuboid: the members to read of each of its outer levels.
struct CuboidPart {
  const Cuboid* cuboid = nullptr;
  std::vector<std::vector<IdRange>> members;
};

/// Parts that share no fact and make up the slice.
struct ReadPlan {
  std::vector<CuboidPart> parts;
  std::optional<LeafSlice> facts;  ///< nothing: the parts are all
};

/// The cheapest plan; without aggregates that fit, all is left for the facts, `rows` of them.
ReadPlan PlanRead(const Cuboids& cuboids, std::span<const LeafLevels> levels,
                  const LeafSlice& slice, const Grouping& grouping, uint64_t rows);

}  // namespace vok::olap
