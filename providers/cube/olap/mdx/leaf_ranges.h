// Sets of leaves as ranges.
#pragma once

#include <cstdint>
#include <vector>

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

}  // namespace vok::olap
