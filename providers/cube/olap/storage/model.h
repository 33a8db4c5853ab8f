// What a cube is made of: dimensions, hierarchies, levels, members and measures.
//
// Immutable once opened and safe to read from several threads, as long as its `CubeFile`. The texts
// of members are read from the file where they are asked for, with the failures of a damaged file
// and of one that was changed since.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "providers/cube/olap/storage/leaf_levels.h"
#include "providers/cube/olap/storage/member_texts.h"

namespace vok::olap {

/// A member's place in its hierarchy. Members are numbered level by level from the top, each level
/// in the cube's order, so that a level's members, and the children of one member, are consecutive.
using MemberId = uint32_t;
inline constexpr MemberId kNoMember = 0xFFFFFFFF;

enum class LevelKind : uint8_t {
  kAll,
  kRegular,
  kYears,
  kHalfYears,
  kQuarters,
  kMonths,
  kWeeks,
  kDays
};

struct Level {
  std::string name;
  LevelKind kind = LevelKind::kRegular;
  IdRange members;
};

class Hierarchy {
 public:
  /// `leaves` and `texts` are those of the members of `levels`.
  Hierarchy(std::string dimension_name, std::string name, bool has_all, std::vector<Level> levels,
            LeafLevels leaves, std::shared_ptr<const MemberTexts> texts);

  /// The hierarchy's own name; the dimension's where the schema gives none.
  const std::string& name() const { return name_; }
  const std::string& dimension_name() const { return dimension_name_; }
  /// "[Date]" for a hierarchy named as its dimension, else "[ActX].[xlFile]".
  const std::string& unique_name() const { return unique_name_; }
  bool has_all() const { return has_all_; }
  const std::vector<Level>& levels() const { return levels_; }

  const LeafLevels& leaf_levels() const { return leaf_levels_; }

  uint32_t MemberCount() const { return levels_.back().members.end; }
  /// Members of the last level. Leaf l is member `levels().back().members.begin + l`.
  uint32_t LeafCount() const { return levels_.back().members.size(); }
  /// The all member, else the first member of the first level.
  MemberId DefaultMember() const { return 0; }

  std::size_t LevelOf(MemberId member) const;
  std::string Name(MemberId member) const { return std::string(Names()[member]); }
  std::string Caption(MemberId member) const { return std::string(Captions()[member]); }
  /// For many members, from first to last.
  TextReader Names() const { return texts_->Names(); }
  TextReader Captions() const { return texts_->Captions(); }
  /// `kNoMember` at the top.
  MemberId Parent(MemberId member) const;
  IdRange Children(MemberId member) const;
  /// The leaves at or below the member.
  IdRange Leaves(MemberId member) const;
  /// "[ActX].[xlFile].[Ledger1]": the hierarchy and the names from the top, the all member left
  /// out;
  /// "[ActX].[xlFile].[All]" for the all member itself. "]" within a name is doubled.
  std::string UniqueName(MemberId member) const;
  /// "[Date].[Month]".
  std::string LevelUniqueName(std::size_t level) const;

 private:
  std::string dimension_name_;
  std::string name_;
  std::string unique_name_;
  bool has_all_;
  std::vector<Level> levels_;
  LeafLevels leaf_levels_;
  std::shared_ptr<const MemberTexts> texts_;
};

/// "[" name "]" with "]" doubled.
std::string Bracketed(std::string_view name);

enum class Aggregator : uint8_t { kSum, kCount, kMin, kMax, kDistinctCount };

struct Measure {
  std::string name;
  std::string caption;
  Aggregator aggregator = Aggregator::kSum;
  std::string format_string;  ///< as in the schema; may be empty
  std::string UniqueName() const { return "[Measures]." + Bracketed(name); }
};

/// A member that the schema computes by a formula.
struct CalculatedDefinition {
  std::string name;
  std::string caption;
  std::string above;          ///< hierarchy or member that it stands below, as in MDX: "[Measures]"
  std::string format_string;  ///< empty: that of the first measure in the formula
  std::string formula;        ///< MDX
  double solve_order = 0;
  bool is_visible = true;  ///< in lists of the cube's members
};

struct Dimension {
  std::string name;
  std::string caption;
  bool is_time = false;
  std::vector<uint32_t> hierarchies;  ///< indexes into `CubeModel::hierarchies`
};

/// "Measures" is not among the dimensions here; it is shown as the first one to the outside.
struct CubeModel {
  std::string name;
  std::string caption;
  std::vector<Dimension> dimensions;
  std::vector<Hierarchy> hierarchies;
  std::vector<Measure> measures;
  std::vector<CalculatedDefinition> calculated;
  uint32_t default_measure = 0;
  uint64_t fact_count = 0;  ///< rows of the fact table that the cube was built from
};

/// Where the tables of a cube lie, when a database server has them.
struct CubeOrigin {
  std::string address;    ///< without user and password
  int64_t refreshed = 0;  ///< seconds since 1970; 0: not since the cube was built
  uint32_t record = 0;    ///< the block with what else a refresh needs to know
};

}  // namespace vok::olap
