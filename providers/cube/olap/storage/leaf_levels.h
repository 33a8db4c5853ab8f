// The levels of a hierarchy as ranges of its leaves. They tell all that there is to know of its
// shape: who stands below whom, too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace vok::olap {

/// Consecutive members, or leaves: `begin` up to but not including `end`.
struct IdRange {
  uint32_t begin = 0;
  uint32_t end = 0;
  uint32_t size() const { return end - begin; }
  friend bool operator==(const IdRange&, const IdRange&) = default;
};

/// Levels as in the hierarchy; members are counted from the first one of their level. The members
/// of the last level are the leaves, and take no memory.
class LeafLevels {
 public:
  /// For each level but the last: after the last leaf of each member.
  LeafLevels(std::vector<std::vector<uint32_t>> ends, uint32_t leaf_count)
      : ends_(std::move(ends)), leaf_count_(leaf_count) {}

  std::size_t LevelCount() const { return ends_.size() + 1; }
  uint32_t LeafCount() const { return leaf_count_; }
  uint32_t MemberCount(std::size_t level) const {
    return level < ends_.size() ? static_cast<uint32_t>(ends_[level].size()) : leaf_count_;
  }
  uint32_t FirstLeaf(std::size_t level, uint32_t member) const {
    return member == 0 ? 0 : EndLeaf(level, member - 1);
  }
  uint32_t EndLeaf(std::size_t level, uint32_t member) const {
    return level < ends_.size() ? ends_[level][member] : member + 1;
  }
  /// The member that the leaf stands below, or is; the number of members for a leaf that is not
  /// there.
  uint32_t MemberOf(std::size_t level, uint32_t leaf) const;
  /// The members all of whose leaves are in the range.
  IdRange MembersWithin(std::size_t level, IdRange leaves) const;
  /// The members whose leaves are these; nothing when a member is cut.
  std::optional<IdRange> MembersOf(std::size_t level, IdRange leaves) const;

 private:
  std::vector<std::vector<uint32_t>> ends_;
  uint32_t leaf_count_;
};

}  // namespace vok::olap
