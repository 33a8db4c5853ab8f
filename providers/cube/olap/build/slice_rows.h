// Where the facts of the slices lie that are added up together.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "providers/cube/olap/storage/cube_writer.h"
#include "providers/cube/olap/storage/slice_scan.h"

namespace vok::olap {

/// The member of the level that each leaf stands below, counted from the level's first.
std::vector<uint32_t> MembersOfLeaves(const NewHierarchy& hierarchy, uint32_t level);

const ColumnSource& LeavesOf(const NewFacts& facts, uint32_t hierarchy);

/// The slices, by the members of the `outer` levels as the digits of a number, that have facts: as
/// few runs as facts are sorted by the outer hierarchies.
std::map<uint64_t, std::vector<RowRange>> FindSlices(const std::vector<HierarchyLevel>& outer,
                                                     const NewCube& cube, const NewFacts& facts,
                                                     unsigned threads);

}  // namespace vok::olap
