// Random queries on a cube: each part is made as a text and as what it means, side by side.
#pragma once

#include <string>
#include <vector>

#include "tests/support/reference_olap/reference_cube.h"

namespace vok::plain {

struct RandomQuery {
  std::string mdx;
  /// The axes and cells, in the words of the recorded answers.
  std::string answer;
};

/// Queries with calculated members, a named set, two or three axes and a slicer; expressions nest
/// three deep. `tame`: only tame forms, no pairs, nothing taken together in the slicer, no NON
/// EMPTY on sets that pick.
std::vector<RandomQuery> RandomQueries(const Cube& cube, const std::string& cube_name,
                                       uint64_t seed, bool tame, int count);

}  // namespace vok::plain
