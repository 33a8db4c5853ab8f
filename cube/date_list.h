// The dates of a cube: its first, its last, and every member between them.
#pragma once

#include <string>

#include "cube/cube_state.h"
#include "platform/cube.h"
#include "platform/date.h"
#include "platform/locale.h"

namespace vok {

/// The names of a date member and of its ancestors.
struct DateNames {
  std::string day;  ///< not read for months
  std::string month;
  std::string year;
};

/// The first day of the month when `by_month`, else the day. Days and years are numbers, a year of
/// one or two digits lies from 1930 to 2029; a month is a number or a name, in the user's language
/// or in English. Failure 13 for other names and for days that no month has; `member` and `level`
/// name the culprit in its text.
Date DateFromNames(const Locale& locale, const DateNames& names, bool by_month,
                   const std::string& member, const std::string& level);

/// First and last date of the hierarchy, from the first and last members of its levels: 1 the
/// years, 3 the months and, where there is one, 4 the days. A first member without a name is passed
/// over. Failures: 3265 where the years are the top level, for a level that is missing, has no
/// members or is declared to hold another span of time, 13 for names that are not a date.
void ReadDateRange(const Locale& locale, const CubeHierarchy& dates, CubeState& cube);

/// `CubeDates` and `CubeDateMembers`: the members of level 4, else of level 3, in the cube's order.
/// The first day is left out when its month has no name. Failures as above, 91 for a member whose
/// ancestors are missing, 13 for one with the date of the member before it and 5 for one that is
/// earlier than that: periods are found by the order of the members. 3265 for days that must be
/// months.
void ReadDateMembers(const Locale& locale, const CubeHierarchy& dates, CubeState& cube);

}  // namespace vok
