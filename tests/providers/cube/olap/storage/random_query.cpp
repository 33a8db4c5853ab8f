#include "tests/providers/cube/olap/storage/random_query.h"

#include <algorithm>

namespace vok::olap {
namespace {

uint32_t Below(plain::Dice& dice, std::size_t limit) {
  return static_cast<uint32_t>(dice.Below(static_cast<int>(limit)));
}

/// Leaves as queries ask for them: mostly those of whole members, as stored aggregates have them.
std::vector<IdRange> RandomRanges(plain::Dice& dice, const Hierarchy& hierarchy) {
  const uint32_t leaves = hierarchy.LeafCount();
  const uint32_t kind = Below(dice, 8);
  if (kind < 3) return {};
  if (kind < 5) {
    const MemberId first = Below(dice, hierarchy.MemberCount());
    const IdRange members = hierarchy.levels()[hierarchy.LevelOf(first)].members;
    const MemberId last = first + Below(dice, members.end - first);
    return {{hierarchy.Leaves(first).begin, hierarchy.Leaves(last).end}};
  }
  if (kind < 7) {
    const uint32_t one = Below(dice, leaves);
    return {{one, one + 1 + (kind == 5 ? 0 : Below(dice, leaves - one))}};
  }
  std::vector<IdRange> ranges;
  for (uint32_t at = Below(dice, 3); at < leaves; at += 2 + Below(dice, 7)) {
    const uint32_t end = std::min(leaves, at + 1 + Below(dice, 3));
    ranges.push_back({at, end});
    at = end;
  }
  return ranges;
}

}  // namespace

FactQuery RandomQuery(plain::Dice& dice, const CubeModel& model, bool grouped) {
  FactQuery query;
  for (uint32_t i = 0; i < model.measures.size(); ++i) query.measures.push_back(i);
  for (const Hierarchy& hierarchy : model.hierarchies) {
    query.leaves.push_back(RandomRanges(dice, hierarchy));
  }
  if (grouped) {
    const uint32_t hierarchy = Below(dice, model.hierarchies.size());
    query.group = {hierarchy, Below(dice, model.hierarchies[hierarchy].levels().size())};
  }
  return query;
}

}  // namespace vok::olap
