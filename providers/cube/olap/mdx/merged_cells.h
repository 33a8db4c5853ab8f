// One cell in place of many: a measure over all leaves of several members, read at once and rounded
// once; and sets of leaves as ranges.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/storage/model.h"

namespace vok::olap {

/// Adds a range after the others; it lengthens the last one where it begins at its end.
void Append(IdRange range, std::vector<IdRange>& ranges);
/// The same leaves as ascending ranges that neither touch nor overlap, without empty ones.
std::vector<IdRange> Merged(std::vector<IdRange> ranges);
/// Whether no leaf is in two of the ranges.
bool Disjoint(std::vector<IdRange> ranges);
/// Whether merged ranges are all of `leaf_count` leaves.
bool CoversAll(const std::vector<IdRange>& merged, uint32_t leaf_count);

/// What members that share facts are to do: they cannot be put together, or count once.
enum class Overlap { kRefused, kOnce };

/// Whether values of disjoint members can be added: sums and counts.
bool AddsUp(Aggregator aggregator);

/// The cell that holds `value` of all tuples of `set`; nothing unless they are every combination of
/// some stored members and the value is a stored cell.
std::optional<Context> MergedCell(CellEvaluator& evaluator, const Block& block, const TupleSet& set,
                                  const ValueExpression& value, Overlap overlap);

}  // namespace vok::olap
