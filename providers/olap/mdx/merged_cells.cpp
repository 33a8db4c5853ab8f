#include "providers/olap/mdx/merged_cells.h"

#include <utility>

#include "providers/olap/mdx/leaf_ranges.h"

namespace vok::olap {
namespace {

bool IsPlain(const Evaluator& evaluator, const Context& context, HierarchyId hierarchy,
             Overlap overlap) {
  for (HierarchyId h = 0; h < context.members.size(); ++h) {
    if (h != hierarchy && (context.members[h] == kNoMember || !IsStored(context.members[h]))) {
      return false;
    }
  }
  const MemberId measure = context.members[kMeasures];
  return overlap == Overlap::kOnce || AddsUp(evaluator.cube().model().measures[measure].aggregator);
}

std::optional<LeafRanges> LeavesOf(const Hierarchy& hierarchy, const TupleSet& set,
                                   Overlap overlap) {
  LeafRanges leaves;
  for (const MemberId id : set.ids) {
    if (!IsStored(id)) return std::nullopt;
    leaves.push_back(hierarchy.Leaves(id));
  }
  if (overlap == Overlap::kRefused && !Disjoint(leaves)) return std::nullopt;
  return Merged(std::move(leaves));
}

}  // namespace

bool AddsUp(Aggregator aggregator) {
  return aggregator == Aggregator::kSum || aggregator == Aggregator::kCount;
}

std::optional<Context> MergedCell(Evaluator& evaluator, const Block& block, const TupleSet& set,
                                  const ValueExpression& value, Overlap overlap) {
  if (set.arity() != 1 || set.hierarchies[0] == kMeasures) return std::nullopt;
  const HierarchyId hierarchy = set.hierarchies[0];
  if (hierarchy == block.Varying()) return std::nullopt;
  Context context = block.context;
  if (!value.MoveTo(evaluator, block, hierarchy, context)) return std::nullopt;
  if (!IsPlain(evaluator, context, hierarchy, overlap)) return std::nullopt;
  auto leaves = LeavesOf(evaluator.cube().Stored(hierarchy), set, overlap);
  if (!leaves) return std::nullopt;
  context.members[hierarchy] = evaluator.cube().DefaultMember(hierarchy);
  context.regions[hierarchy] = evaluator.Keep(std::move(*leaves));
  return context;
}

}  // namespace vok::olap
