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

struct LastPeriods {
  int16_t count = 0;     ///< consecutive date members covered
  std::string argument;  ///< "(count,member)": the count and the last member covered
};

/// Entry `k` of the query period list as the argument of an MDX `LastPeriods` call. A period that
/// lies between two members is the later one alone; one that meets no member gives "(0,)". Times of
/// day do not count. Failures: 9 for an entry that is not in the list, 6 for more members than a
/// 16-bit count can tell.
LastPeriods LastPeriodsArgument(const CubeState& cube, int16_t k);

/// The query over `cube.QueryPeriods`: columns Q0, m0, Q1, m1 … (quantity and money of entry k),
/// rows all members of [QeL].[QeL], filtered by the setting's OBS member. `open_balance_key` is the
/// member of [Opening_Balance] to filter by; ignored for a cube without opening balances. Failures:
/// those of `LastPeriodsArgument`.
std::string BuildQueryMdx(const DataSourceSetting& data_source, const CubeState& cube,
                          int16_t open_balance_key);

}  // namespace vok
