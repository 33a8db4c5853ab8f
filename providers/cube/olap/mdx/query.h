// A query with every name found and every type checked.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "providers/cube/olap/mdx/expression.h"
#include "providers/cube/olap/mdx/source_text.h"

namespace vok::olap {

struct CalculatedMember {
  HierarchyId hierarchy = kMeasures;
  MemberId parent = kNoMember;
  std::string name;
  std::string caption;
  std::string unique_name;
  double solve_order = 0;
  std::optional<std::string> format;
  bool is_declared = false;  ///< in the cube, not in the query
  Place place;               ///< of its name
  ValuePtr formula;
};

struct NamedSet {
  std::string name;
  SetPtr set;
  Place place;
};

struct QueryAxis {
  SetPtr set;
  bool non_empty = false;
  std::size_t offset = 0;  ///< in the text
};

/// Calculated member n has the id n with `kCalculatedBit` set.
struct Query {
  using Indexes = std::vector<std::size_t>;

  /// Adds to the list and under the name. The member's, or set's, index.
  std::size_t Add(const CubeView& cube, CalculatedMember member);
  std::size_t Add(const CubeView& cube, NamedSet set);
  /// Indexes of those with the name, in their order.
  const Indexes& MembersNamed(const CubeView& cube, std::string_view name) const;
  const Indexes& SetsNamed(const CubeView& cube, std::string_view name) const;

  std::vector<std::unique_ptr<const SourceText>> formulas;  ///< of the cube's calculated members
  std::vector<CalculatedMember> members;
  std::vector<NamedSet> sets;
  std::vector<QueryAxis> axes;
  std::optional<QueryAxis> slicer;

  const CalculatedMember& Member(MemberId id) const { return members[id & ~kCalculatedBit]; }

 private:
  using NameIndex = std::unordered_map<std::string, Indexes>;

  NameIndex member_index_;
  NameIndex set_index_;
};

/// That of a stored or calculated measure; nothing for `kNoMember` and where there is none.
std::optional<std::string> FormatOf(const CubeView& cube, const Query& query, MemberId measure);

/// Which of the members of a cell, one per hierarchy, gives it its value: the calculated one of the
/// highest solve order; of equal ones that of the first hierarchy, measures first. `kNoHierarchy`
/// when all are stored.
HierarchyId DecidingHierarchy(const Query& query, const std::vector<MemberId>& members);

}  // namespace vok::olap
