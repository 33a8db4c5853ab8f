// Runs a query on a cube: lexer, parser, syntax tree, resolver, resolved tree, evaluator, result.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "providers/cube/olap/mdx/query_limits.h"
#include "providers/cube/olap/mdx/result.h"

namespace vok::olap {

/// Failure -2147217900, with line and column, for a query that is not understood or past a limit;
/// -2147467259 when the facts are damaged; 7 past the limit of memory; 6 for facts that add up to
/// more than the largest number; and those of `QueryGuard`.
std::unique_ptr<MdxResult> RunMdx(std::shared_ptr<const CubeView> cube, const std::string& mdx,
                                  const QueryLimits& limits = {});
/// The same on the one of `cubes` that the query names.
std::unique_ptr<MdxResult> RunMdx(const std::vector<std::shared_ptr<const CubeView>>& cubes,
                                  const std::string& mdx, const QueryLimits& limits = {});

}  // namespace vok::olap
