// From one stored member to others of its hierarchy.
#pragma once

#include "providers/cube/olap/mdx/cell_evaluator.h"

namespace vok::olap {

/// The member `distance` further in its level; `kNoMember` beyond the ends and for calculated
/// members, unless they stay where they are.
MemberId Neighbour(const CubeView& cube, HierarchyId hierarchy, MemberId member, int64_t distance);
/// The member itself or the one above it in the level; `kNoMember` for a level below.
MemberId AncestorAt(const CellEvaluator& evaluator, HierarchyId hierarchy, MemberId member,
                    uint32_t level);
/// The members of a level at or below one above or in it.
IdRange DescendantsAt(const CubeView& cube, HierarchyId hierarchy, MemberId member, uint32_t level);
/// The member below `to` at the same place, child by child, as `member` has below `from`, both of
/// one level; `kNoMember` where `to` has too few children.
MemberId Cousin(const CubeView& cube, HierarchyId hierarchy, MemberId member, MemberId from,
                MemberId to);

}  // namespace vok::olap
