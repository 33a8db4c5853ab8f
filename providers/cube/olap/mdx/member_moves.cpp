#include "providers/cube/olap/mdx/member_moves.h"

namespace vok::olap {

MemberId Neighbour(const CubeView& cube, HierarchyId hierarchy, MemberId member, int64_t distance) {
  if (distance == 0) return member;
  if (!IsStored(member)) return kNoMember;
  const IdRange level = cube.LevelMembers(hierarchy, cube.LevelOf(hierarchy, member));
  const int64_t moved = int64_t{member} + distance;
  return moved < level.begin || moved >= level.end ? kNoMember : static_cast<MemberId>(moved);
}

MemberId AncestorAt(const CellEvaluator& evaluator, HierarchyId hierarchy, MemberId member,
                    uint32_t level) {
  if (IsCalculated(member)) member = evaluator.Parent(hierarchy, member);
  if (member == kNoMember) return kNoMember;
  uint32_t at = evaluator.cube().LevelOf(hierarchy, member);
  if (at < level) return kNoMember;
  for (; at > level; --at) member = evaluator.cube().Parent(hierarchy, member);
  return member;
}

IdRange DescendantsAt(const CubeView& cube, HierarchyId hierarchy, MemberId member,
                      uint32_t level) {
  IdRange range{member, member + 1};
  for (uint32_t at = cube.LevelOf(hierarchy, member); at < level && range.size() > 0; ++at) {
    range = {cube.Children(hierarchy, range.begin).begin,
             cube.Children(hierarchy, range.end - 1).end};
  }
  return range;
}

MemberId Cousin(const CubeView& cube, HierarchyId hierarchy, MemberId member, MemberId from,
                MemberId to) {
  if (member == from) return to;
  const MemberId parent = cube.Parent(hierarchy, member);
  const MemberId uncle = Cousin(cube, hierarchy, parent, from, to);
  if (uncle == kNoMember) return kNoMember;
  const uint32_t place = member - cube.Children(hierarchy, parent).begin;
  const IdRange cousins = cube.Children(hierarchy, uncle);
  return place < cousins.size() ? cousins.begin + place : kNoMember;
}

}  // namespace vok::olap
