// The dates of a cube: its first, its last, and every member between them.
#pragma once

#include "cube/cube_state.h"
#include "platform/cube.h"
#include "platform/locale.h"

namespace vok {

/// First and last date of the hierarchy, from the first and last members of its levels: 1 the
/// years, 3 the months and, where there is one, 4 the days. A first member without a name is passed
/// over. Failures: 3265 for a level that is missing or has no members, 13 for names that are no
/// date.
void ReadDateRange(const Locale& locale, const CubeHierarchy& dates, CubeState& cube);

/// `CubeDates` and `CubeDateMembers`: the members of level 4, else of level 3, in the cube's order.
/// The first day is left out when its month has no name. Failures as above, 91 for a member whose
/// ancestors are missing, and 5 for one that is earlier than the member before it: periods are
/// found by the order of the members.
void ReadDateMembers(const Locale& locale, const CubeHierarchy& dates, CubeState& cube);

}  // namespace vok
