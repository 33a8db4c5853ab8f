// One cell in place of many: a measure over all leaves of several members, read at once and rounded
// once.
#pragma once

#include <optional>

#include "providers/cube/olap/mdx/cell_evaluator.h"

namespace vok::olap {

/// What members that share facts are to do: they cannot be put together, or count once.
enum class Overlap { kRefused, kOnce };

/// Whether values of disjoint members can be added: sums and counts.
bool AddsUp(Aggregator aggregator);

/// The cell that holds `value` of all tuples of `set`; nothing unless they are every combination of
/// some stored members and the value is a stored cell.
std::optional<Context> MergedCell(CellEvaluator& evaluator, const Block& block, const TupleSet& set,
                                  const ValueExpression& value, Overlap overlap);

}  // namespace vok::olap
