// Sorting facts by their packed keys.
#pragma once

#include <cstdint>
#include <vector>

#include "providers/cube/olap/storage/wide_integer.h"

namespace vok::olap {

/// The leaves of all hierarchies, the first to sort by in the highest bits.
using NarrowKey = uint64_t;
using WideKey = Int128;  // 127 bits at most, never negative

/// Sorts the keys, of which the lowest `bits` are used. Returns where each of them was before.
std::vector<uint32_t> SortKeys(std::vector<NarrowKey>& keys, uint32_t bits);
std::vector<uint32_t> SortKeys(std::vector<WideKey>& keys, uint32_t bits);

}  // namespace vok::olap
