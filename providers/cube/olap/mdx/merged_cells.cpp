#include "providers/cube/olap/mdx/merged_cells.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "providers/cube/olap/mdx/distinct_tuples.h"

namespace vok::olap {
namespace {

bool BeginsBefore(const IdRange& a, const IdRange& b) { return a.begin < b.begin; }

void Ascend(std::vector<IdRange>& ranges) {
  std::erase_if(ranges, [](const IdRange& range) { return range.size() == 0; });
  if (!std::is_sorted(ranges.begin(), ranges.end(), BeginsBefore)) {
    std::sort(ranges.begin(), ranges.end(), BeginsBefore);
  }
}

constexpr int kMostSteps = 100;  // from one calculated member to the next

/// Stored members everywhere but in the hierarchies of the set, and values that can be put
/// together.
bool IsPlain(const CellEvaluator& evaluator, const Context& context, const TupleSet& set,
             Overlap overlap) {
  for (HierarchyId h = 0; h < context.members.size(); ++h) {
    const bool in_set =
        std::find(set.hierarchies.begin(), set.hierarchies.end(), h) != set.hierarchies.end();
    if (!in_set && (context.members[h] == kNoMember || !IsStored(context.members[h]))) return false;
  }
  const MemberId measure = context.members[kMeasures];
  return overlap == Overlap::kOnce || AddsUp(evaluator.cube().model().measures[measure].aggregator);
}

std::optional<LeafRanges> LeavesOf(const Hierarchy& hierarchy, const MemberIds& members,
                                   Overlap overlap) {
  LeafRanges leaves;
  for (const MemberId id : members) {
    if (!IsStored(id)) return std::nullopt;
    leaves.push_back(hierarchy.Leaves(id));
  }
  if (overlap == Overlap::kRefused && !Disjoint(leaves)) return std::nullopt;
  return Merged(std::move(leaves));
}

/// Goes on from a calculated member whose formula is a cell itself, such as one measure in one
/// currency, to that cell. False where a formula is anything else, or needs itself.
bool FollowToStored(CellEvaluator& evaluator, const Block& block, HierarchyId any, Context& place) {
  for (int step = 0; step < kMostSteps; ++step) {
    const HierarchyId deciding = DecidingHierarchy(evaluator.query(), place.members);
    if (deciding == kNoHierarchy) return true;
    const auto& formula = *evaluator.query().Member(place.members[deciding]).formula;
    place.Set(deciding, evaluator.cube().DefaultMember(deciding));
    if (!formula.MoveTo(evaluator, block, any, place)) return false;
  }
  return false;
}

/// The place of the value, which must be one stored cell for all members of the set.
std::optional<Context> PlaceOf(CellEvaluator& evaluator, const Block& block, const TupleSet& set,
                               const ValueExpression& value, Overlap overlap) {
  std::optional<Context> place;
  for (const HierarchyId hierarchy : set.hierarchies) {
    if (hierarchy == kMeasures || hierarchy == block.Varying()) return std::nullopt;
    place = block.context;
    if (!value.MoveTo(evaluator, block, hierarchy, *place)) return std::nullopt;
    for (const HierarchyId h : set.hierarchies) place->Set(h, evaluator.cube().DefaultMember(h));
    if (!FollowToStored(evaluator, block, hierarchy, *place)) return std::nullopt;
  }
  if (place && !IsPlain(evaluator, *place, set, overlap)) place.reset();
  return place;
}

bool HasTwice(const TupleSet& set, const std::vector<MemberIds>& factors) {
  std::size_t combinations = 1;
  for (const auto& members : factors) combinations *= members.size();
  return combinations != set.size();
}

}  // namespace

void Append(IdRange range, std::vector<IdRange>& ranges) {
  if (!ranges.empty() && ranges.back().end == range.begin) {
    ranges.back().end = range.end;
  } else {
    ranges.push_back(range);
  }
}

std::vector<IdRange> Merged(std::vector<IdRange> ranges) {
  Ascend(ranges);
  std::size_t last = 0;
  for (std::size_t i = 1; i < ranges.size(); ++i) {
    if (ranges[i].begin <= ranges[last].end) {
      ranges[last].end = std::max(ranges[last].end, ranges[i].end);
    } else {
      ranges[++last] = ranges[i];
    }
  }
  if (!ranges.empty()) ranges.resize(last + 1);
  return ranges;
}

bool Disjoint(std::vector<IdRange> ranges) {
  Ascend(ranges);
  for (std::size_t i = 1; i < ranges.size(); ++i) {
    if (ranges[i].begin < ranges[i - 1].end) return false;
  }
  return true;
}

bool CoversAll(const std::vector<IdRange>& merged, uint32_t leaf_count) {
  return merged.size() == 1 && merged[0] == IdRange{0, leaf_count};
}

bool AddsUp(Aggregator aggregator) {
  return aggregator == Aggregator::kSum || aggregator == Aggregator::kCount;
}

std::optional<Context> MergedCell(CellEvaluator& evaluator, const Block& block, const TupleSet& set,
                                  const ValueExpression& value, Overlap overlap) {
  std::optional<Context> merged = PlaceOf(evaluator, block, set, value, overlap);
  if (!merged) return std::nullopt;
  const auto factors = FactorsOf(evaluator.guard(), set);
  if (!factors || (overlap == Overlap::kRefused && HasTwice(set, *factors))) return std::nullopt;
  for (std::size_t i = 0; i < set.arity(); ++i) {
    const HierarchyId hierarchy = set.hierarchies[i];
    auto leaves = LeavesOf(evaluator.cube().Stored(hierarchy), (*factors)[i], overlap);
    if (!leaves) return std::nullopt;
    merged->members[hierarchy] = evaluator.cube().DefaultMember(hierarchy);
    merged->regions[hierarchy] = evaluator.Keep(std::move(*leaves));
  }
  return merged;
}

}  // namespace vok::olap
