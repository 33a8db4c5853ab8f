// Asks an open cube what it holds, before a query is built.
#pragma once

#include <cstdint>

#include "cube/cube_state.h"
#include "platform/cube.h"
#include "platform/host.h"
#include "settings/records.h"

namespace vok {

/// Fills `cube` from the catalog's first cube: first and last date, the date members, the flags,
/// the members below the setting's OBS member; the measures' names are added to those that are
/// there. 0, or the number of the failure after it was reported; what was learned before it stays.
int32_t GetMaxDateAndOpBalance(const Host& host, CubeConnection& connection,
                               const DataSourceSetting& data_source, CubeState& cube);

/// Whether the cube keeps opening balances apart: at least two members in the last level of its
/// dimension "Opening_Balance".
bool HasOpeningBalances(const CubeDef& cube);

}  // namespace vok
