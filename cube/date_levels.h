// Where the dates of a cube are looked for, and whether they stand there.
#pragma once

#include <cstddef>
#include <span>

#include "platform/cube.h"
#include "platform/date.h"

namespace vok {

// Levels by position; level 0 is the all level, level 2 is passed over.
inline constexpr std::size_t kYearLevel = 1;
inline constexpr std::size_t kMonthLevel = 3;
inline constexpr std::size_t kDayLevel = 4;

/// Whether the hierarchy has no level of days.
inline bool ByMonth(const CubeHierarchy& dates) { return dates.LevelCount() <= kDayLevel; }

/// Failure 3265 for a level that the cube declares to hold another span of time than is looked for
/// there. Levels of which nothing is told are taken as they stand.
void CheckDeclaredTimes(const CubeHierarchy& dates);

/// Failure 3265 where the members of the day level, whose dates these are, must be months: six or
/// more, all of them 1 to 12 in quarters or halves. Days that are declared as such are taken.
void CheckDaysAreDays(const CubeHierarchy& dates, std::span<const Date> days);

}  // namespace vok
