#include "providers/olap/mdx/slicer.h"

#include <algorithm>
#include <set>
#include <vector>

#include "providers/olap/mdx/leaf_ranges.h"

namespace vok::olap {
namespace {

std::set<MemberId> MembersAt(const TupleSet& tuples, std::size_t column) {
  std::set<MemberId> members;
  for (std::size_t i = 0; i < tuples.size(); ++i) members.insert(tuples.tuple(i)[column]);
  return members;
}

std::size_t DistinctTuples(const TupleSet& tuples) {
  std::set<std::vector<MemberId>> distinct;
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    distinct.insert({tuples.tuple(i), tuples.tuple(i) + tuples.arity()});
  }
  return distinct.size();
}

LeafRanges LeavesOf(const Hierarchy& hierarchy, const std::set<MemberId>& members) {
  LeafRanges leaves;
  for (const MemberId member : members) leaves.push_back(hierarchy.Leaves(member));
  return Merged(std::move(leaves));
}

}  // namespace

Context SlicerContext(Evaluator& evaluator, const SourceText& source) {
  Context context = evaluator.base();
  const auto& slicer = evaluator.query().slicer;
  if (!slicer) return context;
  const TupleSet tuples = slicer->set->Evaluate(evaluator, context);
  if (tuples.arity() == 0) source.Fail(slicer->offset, "the slicer has no members");
  std::size_t combinations = 1;
  for (std::size_t i = 0; i < tuples.arity(); ++i) {
    const HierarchyId hierarchy = tuples.hierarchies[i];
    const std::set<MemberId> members = MembersAt(tuples, i);
    combinations *= std::max<std::size_t>(members.size(), 1);
    if (members.size() < 2) {
      context.Set(hierarchy, members.empty() ? kNoMember : *members.begin());
    } else if (hierarchy == kMeasures || !std::all_of(members.begin(), members.end(), IsStored)) {
      source.Fail(slicer->offset,
                  "not supported: several measures or calculated members of one "
                  "hierarchy in WHERE");
    } else {
      context.regions[hierarchy] =
          evaluator.Keep(LeavesOf(evaluator.cube().Stored(hierarchy), members));
    }
  }
  if (tuples.size() > 1 && DistinctTuples(tuples) != combinations) {
    source.Fail(slicer->offset,
                "not supported: a set in WHERE that is not every combination of "
                "its members");
  }
  return context;
}

}  // namespace vok::olap
