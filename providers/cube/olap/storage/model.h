// What a cube is made of: dimensions, hierarchies, levels, members and measures.
//
// Immutable once opened and safe to read from several threads. Texts are views into the opened file
// and live as long as its `CubeFile`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vok::olap {

/// A member's place in its hierarchy. Members are numbered level by level from the top, each level
/// in the cube's order, so that a level's members, and the children of one member, are consecutive.
using MemberId = uint32_t;
inline constexpr MemberId kNoMember = 0xFFFFFFFF;

/// Consecutive members, or leaves: `begin` up to but not including `end`.
struct IdRange {
  uint32_t begin = 0;
  uint32_t end = 0;
  uint32_t size() const { return end - begin; }
  friend bool operator==(const IdRange&, const IdRange&) = default;
};

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

/// The columns of a hierarchy's members as they lie in the opened file, one entry per member (and
/// one more where a column holds offsets).
struct MemberColumns {
  std::span<const uint32_t> parents;         ///< `kNoMember` at the top
  std::span<const uint32_t> first_children;  ///< children of i: [i], [i + 1]; size members + 1
  std::span<const uint32_t> first_leaves;    ///< leaves below i: [i] up to [i] + leaf_counts[i]
  std::span<const uint32_t> leaf_counts;
  std::span<const uint64_t> name_offsets;     ///< into `texts`; size members + 1
  std::span<const uint64_t> caption_offsets;  ///< into `texts`; size members + 1
  std::string_view texts;
};

class Hierarchy {
 public:
  Hierarchy(std::string dimension_name, std::string name, bool has_all, std::vector<Level> levels,
            MemberColumns columns);

  /// The hierarchy's own name; the dimension's where the schema gives none.
  const std::string& name() const { return name_; }
  const std::string& dimension_name() const { return dimension_name_; }
  /// "[Date]" for a hierarchy named as its dimension, else "[ActX].[xlFile]".
  const std::string& unique_name() const { return unique_name_; }
  bool has_all() const { return has_all_; }
  const std::vector<Level>& levels() const { return levels_; }

  uint32_t MemberCount() const { return static_cast<uint32_t>(columns_.parents.size()); }
  /// Members of the last level. Leaf l is member `levels().back().members.begin + l`.
  uint32_t LeafCount() const { return levels_.back().members.size(); }
  /// The all member, else the first member of the first level.
  MemberId DefaultMember() const { return 0; }

  std::size_t LevelOf(MemberId member) const;
  std::string_view Name(MemberId member) const;
  std::string_view Caption(MemberId member) const;
  MemberId Parent(MemberId member) const { return columns_.parents[member]; }
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
  MemberColumns columns_;
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

}  // namespace vok::olap
