#include "cube/date_levels.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/failure.h"

namespace vok {
namespace {

constexpr int kMonthsOfYear = 12;

struct Place {
  std::size_t level;
  LevelTime time;
  const char* words;
  const char* type;  ///< in the schema of a cube
};
constexpr std::array<Place, 3> kPlaces = {
    {{kYearLevel, LevelTime::kYears, "years", "TimeYears"},
     {kMonthLevel, LevelTime::kMonths, "months", "TimeMonths"},
     {kDayLevel, LevelTime::kDays, "days", "TimeDays"}}};

Failure Misplaced(const CubeHierarchy& dates, const Place& place, const std::string& reason) {
  return Failure(
      failure_number::kItemNotFound,
      "Level " + std::to_string(place.level) + " of the date hierarchy " + dates.UniqueName() +
          ", \"" + dates.LevelAt(place.level)->Name() + "\", " + reason + ", but " + place.words +
          " are looked for there: the figures would be wrong. The levels must be 0 all, "
          "1 years, 2 any, 3 months, 4 days where there are any; quarters below "
          "half-years are one level too many. If the level holds " +
          place.words + ", give it levelType=\"" + place.type + "\". Build the cube again.");
}

/// Whether the dates can only be months that were read as days of a "month" 1 to 4, or 1 to 2: few
/// days are 1 to 3 in January alone, 4 to 6 in February alone.
bool AreMonths(std::span<const Date> dates) {
  constexpr std::size_t kEnough = 6;
  const auto are_in_parts_of = [&](int length) {
    return std::ranges::all_of(dates, [length](Date date) {
      return date.Day() <= kMonthsOfYear && (date.Day() - 1) / length + 1 == date.Month();
    });
  };
  const auto is_later = [&](Date date) { return date.Month() != dates.front().Month(); };
  return dates.size() >= kEnough && std::ranges::any_of(dates, is_later) &&
         (are_in_parts_of(3) || are_in_parts_of(6));
}

}  // namespace

void CheckDeclaredTimes(const CubeHierarchy& dates) {
  for (const Place& place : kPlaces) {
    if (place.level >= dates.LevelCount()) return;
    const LevelTime time = dates.LevelAt(place.level)->Time();
    if (time == LevelTime::kUntold || time == place.time) continue;
    throw Misplaced(dates, place, "is declared to hold another span of time");
  }
}

void CheckDaysAreDays(const CubeHierarchy& dates, std::span<const Date> days) {
  if (dates.LevelAt(kDayLevel)->Time() == LevelTime::kDays) return;
  if (!AreMonths(days)) return;
  throw Misplaced(dates, kPlaces.back(),
                  "has numbers of 1 to 12 that go on from each member of level 3 to the next, as "
                  "months in quarters or halves do");
}

}  // namespace vok
