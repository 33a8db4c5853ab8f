// How to answer a query: from which stored aggregates, and what is left for the facts themselves.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "providers/cube/olap/storage/cuboids.h"
#include "providers/cube/olap/storage/grouping.h"
#include "providers/cube/olap/storage/leaf_levels.h"

namespace vok::olap {

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
