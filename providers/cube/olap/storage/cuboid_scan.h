// Adds up the stored aggregates of a plan.
#pragma once

#include <span>

#include "providers/cube/olap/storage/cancel_check.h"
#include "providers/cube/olap/storage/read_plan.h"
#include "providers/cube/olap/storage/tally.h"

namespace vok::olap {

/// A column of the cuboids, by its place in `Cuboids::columns`, and where its values go.
struct CellTarget {
  std::size_t column = 0;
  Tally* tally = nullptr;
};

/// `inner` are the leaves of the inner hierarchy that take part; none: all. Failure "damaged".
void AddCells(const BlockStore& blocks, const Cuboids& cuboids, std::span<const LeafLevels> levels,
              const CuboidPart& part, const std::vector<IdRange>& inner, const Grouping& grouping,
              std::span<const CellTarget> targets, CancelCheck& watch);

}  // namespace vok::olap
