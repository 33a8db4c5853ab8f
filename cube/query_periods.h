// Chooses the periods that a query asks for.
#pragma once

#include "cube/cube_state.h"
#include "settings/records.h"

namespace vok {

/// Rebuilds `cube.QueryPeriods` from the periods that overlap the cube's dates; period n is
/// measured by money set n. In the opening-balance pass only periods that ask for the opening
/// balance and begin within the cube's dates are taken; the others lose `IncludeOpenBalance` in
/// `settings`. True when at least one period was taken.
bool PrepareQueryPeriods(CurrentSettings& settings, CubeState& cube, bool open_balance_pass);

}  // namespace vok
