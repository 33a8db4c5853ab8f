// Where a query's WHERE puts every cell.
#pragma once

#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/source_text.h"

namespace vok::olap {

/// The base context of the query: default members, and the slicer's. A slicer of several tuples
/// stands on all their leaves at once. Failure -2147217900: several tuples that are not a cross
/// join of stored members.
Context SlicerContext(CellEvaluator& evaluator, const SourceText& source);

}  // namespace vok::olap
