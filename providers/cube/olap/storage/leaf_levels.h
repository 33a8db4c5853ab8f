// The levels of a hierarchy as ranges of its leaves.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "providers/cube/olap/storage/model.h"

namespace vok::olap {

/// Levels and members as in the hierarchy; members are counted from the first one of their level.
class LeafLevels {
 public:
  explicit LeafLevels(const Hierarchy& hierarchy);

  std::size_t LevelCount() const { return ends_.size(); }
  uint32_t LeafCount() const { return MemberCount(ends_.size() - 1); }
  uint32_t MemberCount(std::size_t level) const {
    return static_cast<uint32_t>(ends_[level].size());
  }
  uint32_t FirstLeaf(std::size_t level, uint32_t member) const {
    return member == 0 ? 0 : ends_[level][member - 1];
  }
  uint32_t EndLeaf(std::size_t level, uint32_t member) const { return ends_[level][member]; }
  /// The member that the leaf stands below, or is.
  uint32_t MemberOf(std::size_t level, uint32_t leaf) const;
  /// The members all of whose leaves are in the range.
  IdRange MembersWithin(std::size_t level, IdRange leaves) const;
  /// The members whose leaves are these; nothing when a member is cut.
  std::optional<IdRange> MembersOf(std::size_t level, IdRange leaves) const;

 private:
  std::vector<std::vector<uint32_t>> ends_;  // for each level, after the last leaf of each member
};

}  // namespace vok::olap
