#include "providers/cube/olap/storage/leaf_levels.h"

#include <algorithm>

namespace vok::olap {

LeafLevels::LeafLevels(const Hierarchy& hierarchy) {
  for (const Level& level : hierarchy.levels()) {
    auto& ends = ends_.emplace_back();
    ends.reserve(level.members.size());
    for (MemberId member = level.members.begin; member < level.members.end; ++member) {
      ends.push_back(hierarchy.Leaves(member).end);
    }
  }
}

uint32_t LeafLevels::MemberOf(std::size_t level, uint32_t leaf) const {
  const auto& ends = ends_[level];
  return static_cast<uint32_t>(std::upper_bound(ends.begin(), ends.end(), leaf) - ends.begin());
}

IdRange LeafLevels::MembersWithin(std::size_t level, IdRange leaves) const {
  uint32_t begin = MemberOf(level, leaves.begin);
  if (begin < MemberCount(level) && FirstLeaf(level, begin) < leaves.begin) ++begin;
  const uint32_t end = MemberOf(level, leaves.end);
  return {begin, std::max(begin, end)};
}

std::optional<IdRange> LeafLevels::MembersOf(std::size_t level, IdRange leaves) const {
  const IdRange members = MembersWithin(level, leaves);
  if (members.size() == 0 || FirstLeaf(level, members.begin) != leaves.begin ||
      ends_[level][members.end - 1] != leaves.end) {
    return std::nullopt;
  }
  return members;
}

}  // namespace vok::olap
