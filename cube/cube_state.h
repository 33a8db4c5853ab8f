// What a run learned from its cube, and the periods that its current query asks for.
//
// The values live as long as the process: `GetMaxDateAndOpBalance` and `PrepareQueryPeriods`
// replace them, each its own part.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/date.h"
#include "platform/value.h"

namespace vok {

/// One entry of the query period list: a period of the setting that the query asks for.
struct QueryPeriod {
  Date PeriodFrom;  ///< after clipping to the cube's dates, like `PeriodUntil`
  Date PeriodUntil;
  int16_t PeriodNumber = 0;  ///< 1 to 12, the period's place in the setting
  Value PeriodLabel;         ///< the period's name, a text
  std::string PeriodMeasure;
  std::string PeriodQty;          ///< empty: the quantity column is always zero
  int16_t PeriodOpenBalance = 0;  ///< -1 or 0; filled only for a cube that has opening balances
};

struct CubeState {
  Date FirstDate;
  Date LastDate;
  /// The dates of the cube's date members, ascending, and the members' unique names beside them.
  std::vector<Date> CubeDates;
  std::vector<std::string> CubeDateMembers;
  bool HasOpeningBalance = false;
  bool HasActX = false;
  std::vector<std::string> ObsChildren;
  /// Names of the cube's measures from index 1; index 0 is an empty element that is never compared.
  Value::Array CubeMeasures{Value()};
  /// Of these, by case-folded names, where the cube tells.
  std::map<std::string, std::string> MeasureFormats;
  /// At most 12, by ascending period number; entry k belongs to the query's members Qk and mk.
  std::vector<QueryPeriod> QueryPeriods;
};

}  // namespace vok
