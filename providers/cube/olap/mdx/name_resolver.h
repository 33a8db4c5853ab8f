// What the names in a query mean: dimensions, hierarchies, levels, members, named sets.
//
// "[Date].[2010].[3]": the path begins with a dimension, or a hierarchy by itself; its hierarchy
// may be named or, being the first, left out; then a level or members from the top, the all member
// given or left out. A member below the top is found without the path above it where only one has
// its name. Of calculated members with the same name the first one counts, those of the query
// before those that the cube declares.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "providers/cube/olap/mdx/operand.h"
#include "providers/cube/olap/mdx/query.h"
#include "providers/cube/olap/mdx/source_text.h"
#include "providers/cube/olap/mdx/syntax.h"

namespace vok::olap {

class NameResolver {
 public:
  /// Reads the calculated members and sets of `query`, also those that are added later.
  NameResolver(const CubeView& cube, const SourceText& source, const Query& query);

  /// Failure -2147217900: a name that the cube does not have, or one that several members share.
  Operand Resolve(std::span<const NamePart> path) const;
  /// A new calculated member without formula, from its name in the query, or in the cube that
  /// declares it; nothing for one that is there already.
  std::optional<CalculatedMember> Declare(const Name& name, bool declared) const;

 private:
  using Path = std::span<const NamePart>;

  std::optional<Operand> FindSet(Path path) const;
  std::optional<Operand> FindInDimension(Path path, HierarchyId first) const;
  std::optional<Operand> FindHierarchyAlone(Path path) const;
  std::optional<Operand> InHierarchy(HierarchyId hierarchy, Path rest) const;
  std::optional<Operand> InLevel(HierarchyId hierarchy, uint32_t level, Path rest) const;
  std::optional<Operand> BelowMember(HierarchyId hierarchy, MemberId member, Path rest) const;
  MemberId FindMember(HierarchyId hierarchy, const NamePart& part) const;
  MemberId FindCalculated(HierarchyId hierarchy, MemberId parent, std::string_view name) const;
  MemberId OnlyOne(const std::vector<MemberId>& found, HierarchyId hierarchy,
                   const NamePart& part) const;
  [[noreturn]] void FailUnknown(Path path) const;

  const CubeView& cube_;
  const SourceText& source_;
  const Query& query_;
};

}  // namespace vok::olap
