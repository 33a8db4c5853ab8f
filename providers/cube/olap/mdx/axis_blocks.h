// An axis cut into blocks: positions that differ in the member of one hierarchy only.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "providers/cube/olap/mdx/expression.h"
#include "providers/cube/olap/mdx/query_limits.h"

namespace vok::olap {

struct AxisBlock {
  std::size_t tuple = 0;  ///< index of a position whose members stand for all, but the varying one
  Rows rows;              ///< positions of the axis; empty: all of them, in their order
  std::unique_ptr<Positions> varying;  ///< nullptr: one position, all members as its tuple says

  bool IsWhole() const { return rows.empty(); }
};

/// The hierarchy with the most members on the axis; `kNoHierarchy` when only measures are there.
HierarchyId VaryingHierarchy(const QueryGuard& guard, const TupleSet& axis);
LongList<AxisBlock> CutIntoBlocks(const CubeView& cube, const QueryGuard& guard,
                                  const TupleSet& axis);

}  // namespace vok::olap
