#include "providers/cube/olap/storage/leaf_levels.h"

#include <algorithm>

namespace vok::olap {

uint32_t LeafLevels::MemberOf(std::size_t level, uint32_t leaf) const {
  if (level == ends_.size()) return std::min(leaf, leaf_count_);
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
      EndLeaf(level, members.end - 1) != leaves.end) {
    return std::nullopt;
  }
  return members;
}

}  // namespace vok::olap
