// The members of a hierarchy's levels, each level read when it is first needed.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/cube.h"
#include "system/automation/object.h"

namespace vok::windows {

struct MemberRow {
  std::string name;
  std::string caption;
  std::string unique_name;
  std::string parent;  ///< unique name; "" at the top level
  std::string type;    ///< a number of MDMEMBER_TYPE
};

class LevelMembers {
 public:
  /// `levels`: unique names, from the top.
  LevelMembers(Object connection, std::string cube, std::vector<std::string> levels);

  /// In the cube's order.
  const std::vector<MemberRow>& At(std::size_t level) const;
  /// nullptr when the level has no such member.
  const MemberRow* Find(std::size_t level, const std::string& unique_name) const;

 private:
  struct Level {
    std::string unique_name;
    std::optional<std::vector<MemberRow>> members;
    std::map<std::string, std::size_t> by_unique_name;
  };
  Level& Read(std::size_t level) const;

  Object connection_;
  std::string cube_;
  mutable std::vector<Level> levels_;
};

/// A member that keeps what it came from alive.
class LevelMember : public CubeMember {
 public:
  LevelMember(std::shared_ptr<const LevelMembers> members, std::size_t level, const MemberRow& row)
      : members_(std::move(members)), level_(level), row_(row) {}
  std::string Name() const override { return row_.name; }
  std::string Caption() const override { return row_.caption; }
  std::string UniqueName() const override { return row_.unique_name; }
  std::unique_ptr<CubeMember> Parent() const override;

 private:
  std::shared_ptr<const LevelMembers> members_;
  std::size_t level_;
  const MemberRow& row_;
};

}  // namespace vok::windows
