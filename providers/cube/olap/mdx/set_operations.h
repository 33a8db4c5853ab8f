// Sets joined, compared and crossed, tuple by tuple.
#pragma once

#include "providers/cube/olap/mdx/expression.h"
#include "providers/cube/olap/mdx/source_text.h"

namespace vok::olap {

/// The hierarchies that both sets are over; those of the other where one is {}. Failure
/// -2147217900: sets over different hierarchies.
std::vector<HierarchyId> CommonHierarchies(const SetExpression& a, const SetExpression& b,
                                           Place place);

/// The first set, then the second; each tuple once unless `all`.
SetPtr NewUnion(SetPtr first, SetPtr second, bool all, Place place);
/// The tuples of the first set that are not in the second, as often as they are there.
SetPtr NewExcept(SetPtr first, SetPtr second, Place place);
/// The tuples of the first set that are in the second, each once unless `all`.
SetPtr NewIntersect(SetPtr first, SetPtr second, bool all, Place place);
SetPtr NewDistinct(SetPtr set);

/// The first set runs slowest. Failure -2147217900: a hierarchy that is in both, or, on evaluation,
/// more than `kMaxTuples`.
SetPtr NewCrossJoin(SetPtr first, SetPtr second, Place place);

}  // namespace vok::olap
