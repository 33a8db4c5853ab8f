// Adding up the facts of a cube into the aggregates that it stores.
#pragma once

#include <vector>

#include "providers/cube/olap/build/aggregate_choice.h"
#include "providers/cube/olap/build/slice_cells.h"
#include "providers/cube/olap/storage/cube_writer.h"

namespace vok::olap {

/// Those of a cube; measures of one value column share it.
std::vector<AggregatedColumn> AggregatedColumns(const NewCube& cube, const NewFacts& facts);

/// Adds up on `threads`, writes the blocks; what it returns is still to be added to the cube.
NewAggregates BuildAggregates(const AggregateChoice& choice, const NewCube& cube,
                              const NewFacts& facts, unsigned threads, CubeWriter& writer);

}  // namespace vok::olap
