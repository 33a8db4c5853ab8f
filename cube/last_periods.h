// Locates a period of the query in the cube's date list.
#pragma once

#include <cstdint>
#include <string>

#include "cube/cube_state.h"

namespace vok {

struct LastPeriods {
  int16_t count = 0;     ///< consecutive date members covered
  std::string argument;  ///< "(count,member)": the count and the last member covered
};

/// Entry `k` of the query period list as the argument of an MDX `LastPeriods` call. A period that
/// lies between two members is the later one alone; one that meets no member gives "(0,)". Times of
/// day do not count. Failures: 9 for an entry that is not in the list, 6 for more members than a
/// 16-bit count can tell.
LastPeriods LastPeriodsArgument(const CubeState& cube, int16_t k);

}  // namespace vok
