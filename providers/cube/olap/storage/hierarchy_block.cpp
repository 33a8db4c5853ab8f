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

/// Where the columns of so many members begin in their block.
struct MemberColumns {
  explicit MemberColumns(uint64_t members)
      : captions(names + (members + 1) * sizeof(uint64_t)),
        parents(captions + (members + 1) * sizeof(uint64_t)),
        first_children(parents + members * sizeof(uint32_t)),
        first_leaves(first_children + (members + 1) * sizeof(uint32_t)),
        leaf_counts(first_leaves + members * sizeof(uint32_t)),
        texts(leaf_counts + members * sizeof(uint32_t)) {}

  uint64_t names = 2 * sizeof(uint64_t);
  uint64_t captions;
  uint64_t parents;
  uint64_t first_children;
  uint64_t first_leaves;
  uint64_t leaf_counts;
  uint64_t texts;
};

/// The numbers of a column, one after the other.
class NumberReader {
 public:
  NumberReader(const PagedBlock& block, uint64_t begin) : begin_(begin), reader_(block) {}
  uint32_t operator[](uint64_t member) {
    return reader_.Get<uint32_t>(begin_ + member * sizeof(uint32_t));
  }

 private:
  uint64_t begin_;
  PageReader reader_;
};

/// Goes through each column from front to back.
class Checker {
 public:
  Checker(const std::string& file_name, const PagedBlock& block, const MemberColumns& columns,
          const std::vector<Level>& levels)
      : file_name_(file_name),
        levels_(levels),
        parents_(block, columns.parents),
        first_children_(block, columns.first_children),
        first_leaves_(block, columns.first_leaves),
        leaf_counts_(block, columns.leaf_counts) {}

  LeafLevels CheckedLevels() {
    LeafLevels leaves(EndsOfMembers(), levels_.back().members.size());
    for (std::size_t level = 0; level < levels_.size(); ++level) CheckLevel(level, leaves);
    return leaves;
  }

  void CheckTexts(TextReader texts, uint64_t text_bytes) const {
    const uint64_t members = levels_.back().members.end;
    for (uint64_t i = 0; i < members; ++i) {
      const uint64_t end = texts.PlaceOf(i + 1);
      if (texts.PlaceOf(i) > end || end > text_bytes) Refuse("a name is misplaced");
      if (!IsUtf8(texts[i])) Refuse("a name is not UTF-8");
    }
  }

 private:
  /// From the leaves upwards: a member's leaves end with those of its last child.
  std::vector<std::vector<uint32_t>> EndsOfMembers() {
    std::vector<std::vector<uint32_t>> ends(levels_.size() - 1);
    CheckLeaves();
    for (std::size_t level = ends.size(); level-- > 0;) {
      const IdRange members = levels_[level].members;
      const IdRange below = levels_[level + 1].members;
      ends[level].reserve(members.size());
      MemberId next = below.begin;
      for (MemberId member = members.begin; member < members.end; ++member) {
        const MemberId end = first_children_[member + 1];
        if (first_children_[member] != next || end <= next || end > below.end) {
          Refuse("a member's children are not valid");
        }
        const uint32_t last = end - 1 - below.begin;
        ends[level].push_back(level + 1 < ends.size() ? ends[level + 1][last] : last + 1);
        next = end;
      }
      if (next != below.end) Refuse("children are missing");
    }
    return ends;
  }

  void CheckLeaves() {
    const IdRange leaves = levels_.back().members;
    for (uint64_t member = leaves.begin; member <= leaves.end; ++member) {
      if (first_children_[member] != leaves.end) Refuse("a member's children are not valid");
    }
  }

  void CheckLevel(std::size_t level, const LeafLevels& leaves) {
    const IdRange members = levels_[level].members;
    uint32_t above = 0;  // the member of the level above
    for (uint32_t i = 0; i < members.size(); ++i) {
      const MemberId member = members.begin + i;
      const uint32_t first = leaves.FirstLeaf(level, i);
      if (first_leaves_[member] != first ||
          leaf_counts_[member] != leaves.EndLeaf(level, i) - first) {
        Refuse("a member's leaves are not valid");
      }
      if (level > 0 && leaves.EndLeaf(level - 1, above) == first) ++above;
      const MemberId parent = level > 0 ? levels_[level - 1].members.begin + above : kNoMember;
      if (parents_[member] != parent) Refuse("a member's parent is not valid");
    }
  }

  [[noreturn]] void Refuse(const std::string& what) const {
    throw DamagedCubeFile(file_name_, what);
  }

  const std::string& file_name_;
  const std::vector<Level>& levels_;
  NumberReader parents_;
  NumberReader first_children_;
  NumberReader first_leaves_;
  NumberReader leaf_counts_;
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

StoredMembers ReadHierarchyBlock(const BlockStore& blocks, uint32_t block,
                                 const std::vector<Level>& levels) {
  const uint64_t count = levels.back().members.end;
  const MemberColumns columns(count);
  const auto texts = std::make_shared<const MemberTexts>(blocks, block, columns.names,
                                                         columns.captions, columns.texts);
  const uint64_t length = texts->block.length();
  PageReader head(texts->block);
  if (length < columns.texts || head.Get<uint64_t>(0) != count) {
    throw DamagedCubeFile(blocks.file_name(), "members are missing");
  }
  const auto text_bytes = head.Get<uint64_t>(sizeof(uint64_t));
  if (text_bytes > length - columns.texts) {
    throw DamagedCubeFile(blocks.file_name(), "names are missing");
  }
  Checker checker(blocks.file_name(), texts->block, columns, levels);
  checker.CheckTexts(texts->Names(), text_bytes);
  checker.CheckTexts(texts->Captions(), text_bytes);
  return {checker.CheckedLevels(), texts};
}

}  // namespace vok::olap
