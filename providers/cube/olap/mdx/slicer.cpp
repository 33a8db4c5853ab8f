#include "providers/cube/olap/mdx/slicer.h"

#include <algorithm>
#include <vector>

#include "providers/cube/olap/mdx/distinct_tuples.h"
#include "providers/cube/olap/mdx/leaf_ranges.h"

namespace vok::olap {
namespace {

LeafRanges LeavesOf(const Hierarchy& hierarchy, const MemberIds& members) {
  LeafRanges leaves;
  for (const MemberId member : members) leaves.push_back(hierarchy.Leaves(member));
  return Merged(std::move(leaves));
}

}  // namespace

Context SlicerContext(CellEvaluator& evaluator, const SourceText& source) {
  Context context = evaluator.base();
  const auto& slicer = evaluator.query().slicer;
  if (!slicer) return context;
  const TupleSet tuples =
      evaluator.SetOf(*slicer->set, "the slicer", Place{&source, slicer->offset});
  evaluator.guard().Check();
  if (tuples.arity() == 0) source.Fail(slicer->offset, "the slicer has no members");
  const auto factors = FactorsOf(evaluator.guard(), tuples);
  if (!factors) {
    source.Fail(slicer->offset,
                "not supported: a set in WHERE that is not every combination of its members");
  }
  for (std::size_t i = 0; i < tuples.arity(); ++i) {
    const HierarchyId hierarchy = tuples.hierarchies[i];
    const MemberIds& members = (*factors)[i];
    if (members.size() < 2) {
      context.Set(hierarchy, members.empty() ? kNoMember : members[0]);
    } else if (hierarchy == kMeasures || !std::all_of(members.begin(), members.end(), IsStored)) {
      source.Fail(slicer->offset,
                  "not supported: several measures or calculated members of one "
                  "hierarchy in WHERE");
    } else {
      context.regions[hierarchy] =
          evaluator.Keep(LeavesOf(evaluator.cube().Stored(hierarchy), members));
    }
  }
  return context;
}

}  // namespace vok::olap
