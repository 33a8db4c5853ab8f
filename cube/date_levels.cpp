#include "cube/date_levels.h"

#include <array>
#include <set>
#include <string>

#include "platform/failure.h"

namespace vok {
namespace {

constexpr std::size_t kMonthsOfYear = 12;

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

/// Whether these dates of one year can only be months that were read as days of a "month" 1 to 4.
bool AreMonths(std::span<const Date> year) {
  if (year.size() != kMonthsOfYear) return false;
  std::set<int> days, months;
  for (const Date date : year) {
    days.insert(date.Day());
    months.insert(date.Month());
  }
  const bool each_once = days.size() == kMonthsOfYear && *days.rbegin() == kMonthsOfYear;
  if (!each_once || (months.size() != 2 && months.size() != 4)) return false;
  const std::size_t length = kMonthsOfYear / months.size();
  for (std::size_t i = 0; i < year.size(); ++i) {
    if (year[i].Month() != year[i - i % length].Month()) return false;
  }
  return true;
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
  for (std::size_t end = 0; !days.empty(); days = days.subspan(end)) {
    const int year = days.front().Year();
    for (end = 1; end < days.size() && days[end].Year() == year;) ++end;
    if (!AreMonths(days.first(end))) continue;
    throw Misplaced(dates, kPlaces.back(),
                    "has 1 to 12, each once, in " + std::to_string(year) +
                        ", as months in quarters or halves are");
  }
}

}  // namespace vok
