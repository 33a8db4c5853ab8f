// Builds the text of the query that a run sends to its cube.
//
// The text is plain concatenation, nothing in it is escaped or checked: a name that the cube does
// not know is refused by the cube. Lines end in CR LF.
#pragma once

#include <cstdint>
#include <string>

#include "cube/cube_state.h"
#include "settings/records.h"

namespace vok {

/// The query over `cube.QueryPeriods`: columns Q0, m0, Q1, m1 … (quantity and money of entry k),
/// rows all members of [QeL].[QeL], filtered by the setting's OBS member. `open_balance_key` is the
/// member of [Opening_Balance] to filter by; ignored for a cube without opening balances. Failures:
/// those of `LastPeriodsArgument`.
std::string BuildQueryMdx(const DataSourceSetting& data_source, const CubeState& cube,
                          int16_t open_balance_key);

}  // namespace vok
