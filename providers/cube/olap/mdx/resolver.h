// From the syntax tree to a query whose names are found and whose types are checked.
#pragma once

#include <string_view>

#include "providers/cube/olap/mdx/query.h"
#include "providers/cube/olap/mdx/query_limits.h"
#include "providers/cube/olap/mdx/source_text.h"
#include "providers/cube/olap/mdx/syntax.h"

namespace vok::olap {

/// Whether a calculated member's property of this name says only how it is shown elsewhere: it is
/// accepted and changes nothing.
bool IsIgnoredProperty(std::string_view name);

/// Failure -2147217900 with line and column: a name the cube does not have, a type that does not
/// fit, something that is not supported, a hierarchy on several axes; and those of `QueryGuard`.
Query Resolve(const CubeView& cube, const SourceText& source, const Statement& statement,
              const QueryGuard& guard);

}  // namespace vok::olap
