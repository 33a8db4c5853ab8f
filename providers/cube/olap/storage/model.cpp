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
                     std::vector<Level> levels, MemberColumns columns)
    : dimension_name_(std::move(dimension_name)),
      name_(std::move(name)),
      unique_name_(Bracketed(dimension_name_)),
      has_all_(has_all),
      levels_(std::move(levels)),
      columns_(columns) {
  if (name_ != dimension_name_) unique_name_ += "." + Bracketed(name_);
}

std::size_t Hierarchy::LevelOf(MemberId member) const {
  std::size_t level = 0;
  while (member >= levels_[level].members.end) ++level;
  return level;
}

std::string_view Hierarchy::Name(MemberId member) const {
  const uint64_t begin = columns_.name_offsets[member];
  return columns_.texts.substr(begin, columns_.name_offsets[member + 1] - begin);
}

std::string_view Hierarchy::Caption(MemberId member) const {
  const uint64_t begin = columns_.caption_offsets[member];
  return columns_.texts.substr(begin, columns_.caption_offsets[member + 1] - begin);
}

IdRange Hierarchy::Children(MemberId member) const {
  return {columns_.first_children[member], columns_.first_children[member + 1]};
}

IdRange Hierarchy::Leaves(MemberId member) const {
  const uint32_t first = columns_.first_leaves[member];
  return {first, first + columns_.leaf_counts[member]};
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
