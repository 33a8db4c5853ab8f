#include "providers/cube/olap/storage/grouping.h"

#include <algorithm>

namespace vok::olap {

Grouping::Grouping(const LeafLevels& levels, uint32_t hierarchy, uint32_t level)
    : hierarchy_(hierarchy),
      count_(levels.MemberCount(level)),
      slots_(std::size_t{levels.LeafCount()} + 1),
      leaf_count_(levels.LeafCount()) {
  if (count_ == leaf_count_) return;
  group_of_leaf_.assign(slots_, static_cast<uint32_t>(count_));
  for (uint32_t group = 0; group < count_; ++group) {
    const uint32_t end =
        group + 1 < count_ ? levels.FirstLeaf(level, group + 1) : levels.LeafCount();
    std::fill(group_of_leaf_.begin() + levels.FirstLeaf(level, group), group_of_leaf_.begin() + end,
              group);
  }
}

void Grouping::Map(std::span<uint32_t> leaves) const {
  for (uint32_t& leaf : leaves) leaf = std::min(leaf, leaf_count_);
  if (group_of_leaf_.empty()) return;
  for (uint32_t& leaf : leaves) leaf = group_of_leaf_[leaf];
}

}  // namespace vok::olap
