// From a resolved query to its answer: axes, cells, and what NON EMPTY leaves of them.
#pragma once

#include <memory>

#include "providers/cube/olap/mdx/query_limits.h"
#include "providers/cube/olap/mdx/result.h"
#include "providers/cube/olap/mdx/source_text.h"

namespace vok::olap {

/// Failures: those of `QueryGuard`; -2147217900: more cells than the limit, a slicer that is no
/// cross join of stored members, a formula that cannot be computed; -2147467259: damaged facts.
std::unique_ptr<MdxResult> Evaluate(std::shared_ptr<const CubeView> cube, Query query,
                                    const SourceText& source, const QueryGuard& guard);

}  // namespace vok::olap
