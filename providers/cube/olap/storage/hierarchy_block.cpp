#include "providers/cube/olap/storage/hierarchy_block.h"

#include <algorithm>
#include <numeric>

#include "platform/utf8.h"
#include "providers/cube/olap/storage/bytes.h"

namespace vok::olap {
namespace {

/// Where each member's children begin; one entry more than members.
std::vector<uint32_t> FirstChildren(const NewHierarchy& hierarchy) {
  const auto count = static_cast<uint32_t>(hierarchy.members.size());
  std::vector<uint32_t> first(count + 1, 0);
  for (const NewMember& member : hierarchy.members) {
    if (member.parent != kNoMember) ++first[member.parent + 1];
  }
  first[0] = hierarchy.levels.front().members.end;
  std::partial_sum(first.begin(), first.end(), first.begin());
  return first;
}

struct LeafRanges {
  std::vector<uint32_t> first;
  std::vector<uint32_t> count;
};

/// From the leaves upwards: a member's leaves are those of its children, one after the other.
LeafRanges LeafRangesOf(const NewHierarchy& hierarchy, const std::vector<uint32_t>& children) {
  const std::size_t members = hierarchy.members.size();
  const uint32_t first_leaf = hierarchy.levels.back().members.begin;
  LeafRanges leaves{std::vector<uint32_t>(members), std::vector<uint32_t>(members, 1)};
  for (std::size_t member = members; member-- > 0;) {
    if (member >= first_leaf) {
      leaves.first[member] = static_cast<uint32_t>(member) - first_leaf;
      continue;
    }
    leaves.first[member] = leaves.first[children[member]];
    leaves.count[member] = std::accumulate(leaves.count.begin() + children[member],
                                           leaves.count.begin() + children[member + 1], 0U);
  }
  return leaves;
}

std::vector<uint64_t> PutTexts(const std::vector<NewMember>& members, std::string NewMember::*field,
                               std::string& texts) {
  std::vector<uint64_t> offsets{texts.size()};
  for (const NewMember& member : members) {
    texts += member.*field;
    offsets.push_back(texts.size());
  }
  return offsets;
}

class Checker {
 public:
  Checker(const BlockStore& blocks, const MemberColumns& columns, const std::vector<Level>& levels)
      : blocks_(blocks), columns_(columns), levels_(levels) {}

  void Check() const {
    CheckOffsets(columns_.name_offsets);
    CheckOffsets(columns_.caption_offsets);
    if (!IsUtf8(columns_.texts)) Refuse("a name is not UTF-8");
    const std::size_t members = columns_.parents.size();
    if (columns_.first_children[members] != members) Refuse("children are missing");
    for (std::size_t level = 0; level < levels_.size(); ++level) CheckLevel(level);
  }

 private:
  void CheckOffsets(std::span<const uint64_t> offsets) const {
    uint64_t last = 0;
    for (const uint64_t offset : offsets) {
      // A text that begins within a character is cut wrongly.
      const bool cuts = offset < columns_.texts.size() && !StartsCharacter(columns_.texts[offset]);
      if (offset < last || offset > columns_.texts.size() || cuts) Refuse("a name is misplaced");
      last = offset;
    }
  }

  void CheckLevel(std::size_t level) const {
    const IdRange members = levels_[level].members;
    const bool is_leaf = level + 1 == levels_.size();
    uint32_t next_leaf = 0;
    for (MemberId member = members.begin; member < members.end; ++member) {
      const IdRange children{columns_.first_children[member], columns_.first_children[member + 1]};
      CheckParent(level, member);
      if (is_leaf ? children.begin != children.end : !AreChildren(member, level, children)) {
        Refuse("a member's children are not valid");
      }
      const uint32_t leaves = is_leaf ? 1 : LeavesOf(children);
      if (columns_.first_leaves[member] != next_leaf || columns_.leaf_counts[member] != leaves) {
        Refuse("a member's leaves are not valid");
      }
      next_leaf += leaves;
    }
    if (next_leaf != levels_.back().members.size()) Refuse("leaves are missing");
  }

  void CheckParent(std::size_t level, MemberId member) const {
    const MemberId parent = columns_.parents[member];
    if (level == 0
            ? parent != kNoMember
            : !Contains(levels_[level - 1].members, parent) ||
                  !Contains({columns_.first_children[parent], columns_.first_children[parent + 1]},
                            member)) {
      Refuse("a member's parent is not valid");
    }
  }

  bool AreChildren(MemberId member, std::size_t level, IdRange children) const {
    const IdRange below = levels_[level + 1].members;
    return children.begin < children.end && children.begin >= below.begin &&
           children.end <= below.end && columns_.parents[children.begin] == member &&
           columns_.parents[children.end - 1] == member;
  }

  uint32_t LeavesOf(IdRange children) const {
    return std::accumulate(columns_.leaf_counts.begin() + children.begin,
                           columns_.leaf_counts.begin() + children.end, 0U);
  }

  static bool Contains(IdRange range, uint32_t id) { return id >= range.begin && id < range.end; }

  [[noreturn]] void Refuse(const std::string& what) const {
    throw DamagedCubeFile(blocks_.file_name(), what);
  }

  const BlockStore& blocks_;
  const MemberColumns& columns_;
  const std::vector<Level>& levels_;
};

}  // namespace

std::string HierarchyBlock(const NewHierarchy& hierarchy) {
  const auto& members = hierarchy.members;
  std::string texts;
  const auto names = PutTexts(members, &NewMember::name, texts);
  const bool own_captions = std::any_of(members.begin(), members.end(),
                                        [](const NewMember& m) { return m.caption != m.name; });
  const auto captions = own_captions ? PutTexts(members, &NewMember::caption, texts) : names;
  const auto children = FirstChildren(hierarchy);
  const auto leaves = LeafRangesOf(hierarchy, children);
  std::vector<uint32_t> parents;
  parents.reserve(members.size());
  for (const NewMember& member : members) parents.push_back(member.parent);

  ByteWriter out;
  out.Put(static_cast<uint64_t>(members.size()));
  out.Put(static_cast<uint64_t>(texts.size()));
  out.PutAll(std::span(names));
  out.PutAll(std::span(captions));
  out.PutAll(std::span<const uint32_t>(parents));
  out.PutAll(std::span(children));
  out.PutAll(std::span(leaves.first));
  out.PutAll(std::span(leaves.count));
  out.PutAll(std::span<const char>(texts));
  return std::string(out.bytes());
}

MemberColumns ReadHierarchyBlock(BlockStore& blocks, uint32_t block,
                                 const std::vector<Level>& levels) {
  ByteReader in(blocks.Keep(block), blocks.file_name());
  const auto count = in.Get<uint64_t>();
  if (count != levels.back().members.end) {
    throw DamagedCubeFile(blocks.file_name(), "members are missing");
  }
  const auto text_bytes = in.Get<uint64_t>();
  MemberColumns columns;
  columns.name_offsets = in.GetAll<uint64_t>(count + 1);
  columns.caption_offsets = in.GetAll<uint64_t>(count + 1);
  columns.parents = in.GetAll<uint32_t>(count);
  columns.first_children = in.GetAll<uint32_t>(count + 1);
  columns.first_leaves = in.GetAll<uint32_t>(count);
  columns.leaf_counts = in.GetAll<uint32_t>(count);
  const auto texts = in.GetAll<char>(text_bytes);
  columns.texts = {texts.data(), texts.size()};
  Checker(blocks, columns, levels).Check();
  return columns;
}

}  // namespace vok::olap
