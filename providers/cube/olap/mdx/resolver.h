// From the syntax tree to a query whose names are found and whose types are checked.
#pragma once

#include <string_view>

#include "providers/cube/olap/mdx/name_resolver.h"
#include "providers/cube/olap/mdx/query.h"
#include "providers/cube/olap/mdx/query_limits.h"
#include "providers/cube/olap/mdx/source_text.h"
#include "providers/cube/olap/mdx/syntax.h"

namespace vok::olap {

/// Answers have the same properties for every question; names are looked into so that a mistyped
/// one is told. Failure -2147217900 with the place: not a property of members, or one of something
/// other than a hierarchy or a level.
void CheckMemberProperty(const NameResolver& names, const SourceText& source, const Name& name);
/// The same of cells.
void CheckCellProperty(const SourceText& source, const Name& name);

/// Whether a calculated member's property of this name says only how it is shown elsewhere: it is
/// accepted and changes nothing.
bool IsIgnoredProperty(std::string_view name);

/// Failure -2147217900 with line and column: a name the cube does not have, a type that does not
/// fit, something that is not supported, a hierarchy on several axes; and those of `QueryGuard`.
Query Resolve(const CubeView& cube, const SourceText& source, const Statement& statement,
              const QueryGuard& guard);

}  // namespace vok::olap
