// A catalog's structure through the platform's multidimensional data objects.
//
// Cubes, dimensions, hierarchies and levels are those objects; a level's members are read all at
// once, from the members schema rowset of the connection, when the first of them is asked for.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/cube.h"
#include "platform/locale.h"
#include "system/automation/object.h"

namespace vok::windows {

/// Numbers of the schema rowsets, as `OpenSchema` takes them.
inline constexpr int32_t kCatalogsSchema = 1;
inline constexpr int32_t kMembersSchema = 38;

/// Row by row the texts of the named columns, in the provider's order; NULL is "". Empty
/// `restrictions` ask for all rows, an empty value in them restricts nothing. Failures: the
/// provider's.
std::vector<std::vector<std::string>> SchemaRows(const Object& connection, int32_t schema,
                                                 const Value::Array& restrictions,
                                                 const std::vector<std::string>& columns);

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

class AdomdCatalog : public CubeCatalog {
 public:
  /// `locale` outlives the catalog and what it hands out.
  AdomdCatalog(const Locale& locale, Object connection);
  std::size_t CubeCount() const override;
  std::unique_ptr<CubeDef> CubeAt(std::size_t index) const override;

 private:
  const Locale& locale_;
  Object catalog_ = Object::Create("ADOMD.Catalog");
  Object connection_;  ///< for the schema rowsets
};

}  // namespace vok::windows
