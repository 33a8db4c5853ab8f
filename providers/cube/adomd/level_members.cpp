#include "providers/cube/adomd/level_members.h"

#include <utility>

#include "platform/failure.h"
#include "providers/cube/adomd/schema_rows.h"

namespace vok::windows {

LevelMembers::LevelMembers(Object connection, std::string cube, std::vector<std::string> levels)
    : connection_(std::move(connection)), cube_(std::move(cube)) {
  for (std::string& level : levels) levels_.push_back({std::move(level), {}, {}});
}

LevelMembers::Level& LevelMembers::Read(std::size_t index) const {
  if (index >= levels_.size()) {
    throw Failure(failure_number::kItemNotFound, "The cube's hierarchy has no such level.");
  }
  Level& level = levels_[index];
  if (level.members) return level;
  // Catalog and schema are the connection's; the dimension and the hierarchy follow from the level.
  const Value::Array restrictions{Value(), Value(), cube_, Value(), Value(), level.unique_name};
  std::vector<MemberRow> members;
  for (auto& row : SchemaRows(connection_, kMembersSchema, restrictions,
                              {"MEMBER_NAME", "MEMBER_CAPTION", "MEMBER_UNIQUE_NAME",
                               "PARENT_UNIQUE_NAME", "MEMBER_TYPE"})) {
    level.by_unique_name.emplace(row[2], members.size());
    members.push_back({std::move(row[0]), std::move(row[1]), std::move(row[2]), std::move(row[3]),
                       std::move(row[4])});
  }
  level.members = std::move(members);
  return level;
}

const std::vector<MemberRow>& LevelMembers::At(std::size_t level) const {
  return *Read(level).members;
}

const MemberRow* LevelMembers::Find(std::size_t level, const std::string& unique_name) const {
  const Level& read = Read(level);
  const auto found = read.by_unique_name.find(unique_name);
  return found == read.by_unique_name.end() ? nullptr : &(*read.members)[found->second];
}

std::unique_ptr<CubeMember> LevelMember::Parent() const {
  if (level_ == 0 || row_.parent.empty()) return nullptr;
  const MemberRow* parent = members_->Find(level_ - 1, row_.parent);
  if (parent == nullptr) return nullptr;
  return std::make_unique<LevelMember>(members_, level_ - 1, *parent);
}

}  // namespace vok::windows
