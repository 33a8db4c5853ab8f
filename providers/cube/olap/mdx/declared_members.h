// The calculated members that a cube declares.
#pragma once

#include <span>
#include <string>

#include "providers/cube/olap/mdx/query.h"
#include "providers/cube/olap/mdx/query_limits.h"

namespace vok::olap {

/// Makes them the first members of a query that has none yet. `places` (one for each member, or
/// none) begin the failures. Failure -2147217900 with the member and the line and column of its
/// formula: one that is not understood, or a member declared twice; and those of `QueryGuard`.
void AddDeclaredMembers(const CubeView& cube, Query& query, const QueryGuard& guard,
                        std::span<const std::string> places = {});

}  // namespace vok::olap
