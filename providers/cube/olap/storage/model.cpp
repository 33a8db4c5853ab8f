#include "providers/cube/olap/storage/model.h"

#include <utility>

namespace vok::olap {

std::string Bracketed(std::string_view name) {
  std::string text = "[";
  for (const char letter : name) {
    text += letter;
    if (letter == ']') text += ']';
  }
  text += ']';
  return text;
}

Hierarchy::Hierarchy(std::string dimension_name, std::string name, bool has_all,
                     std::vector<Level> levels, LeafLevels leaves,
                     std::shared_ptr<const MemberTexts> texts)
    : dimension_name_(std::move(dimension_name)),
      name_(std::move(name)),
      unique_name_(Bracketed(dimension_name_)),
      has_all_(has_all),
      levels_(std::move(levels)),
      leaf_levels_(std::move(leaves)),
      texts_(std::move(texts)) {
  if (name_ != dimension_name_) unique_name_ += "." + Bracketed(name_);
}

std::size_t Hierarchy::LevelOf(MemberId member) const {
  std::size_t level = 0;
  while (member >= levels_[level].members.end) ++level;
  return level;
}

MemberId Hierarchy::Parent(MemberId member) const {
  const std::size_t level = LevelOf(member);
  if (level == 0) return kNoMember;
  const uint32_t leaf = leaf_levels_.FirstLeaf(level, member - levels_[level].members.begin);
  return levels_[level - 1].members.begin + leaf_levels_.MemberOf(level - 1, leaf);
}

IdRange Hierarchy::Children(MemberId member) const {
  const std::size_t below = LevelOf(member) + 1;
  if (below == levels_.size()) return {};
  const IdRange children = leaf_levels_.MembersWithin(below, Leaves(member));
  const MemberId first = levels_[below].members.begin;
  return {first + children.begin, first + children.end};
}

IdRange Hierarchy::Leaves(MemberId member) const {
  const std::size_t level = LevelOf(member);
  const uint32_t place = member - levels_[level].members.begin;
  return {leaf_levels_.FirstLeaf(level, place), leaf_levels_.EndLeaf(level, place)};
}

std::string Hierarchy::UniqueName(MemberId member) const {
  const MemberId parent = Parent(member);
  const bool top = parent == kNoMember || (has_all_ && parent == 0);
  std::string path = top ? unique_name_ : UniqueName(parent);
  path += '.';
  path += Bracketed(Name(member));
  return path;
}

std::string Hierarchy::LevelUniqueName(std::size_t level) const {
  return unique_name_ + "." + Bracketed(levels_[level].name);
}

}  // namespace vok::olap
