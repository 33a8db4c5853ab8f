#include "cube/date_list.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "cube/date_levels.h"
#include "platform/calendar.h"
#include "platform/date.h"
#include "platform/failure.h"
#include "platform/text.h"

namespace vok {
namespace {

constexpr std::size_t kShortYearDigits = 2;
constexpr int kLastMonth = 12;

std::optional<int> WholeNumber(std::string_view name) {
  const std::string_view digits = TrimBlanks(name);
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos) {
    return std::nullopt;
  }
  int number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return result.ec == std::errc{} ? std::optional(number) : std::nullopt;
}

std::optional<int> YearNamed(std::string_view name) {
  const auto year = WholeNumber(name);
  if (!year || TrimBlanks(name).size() > kShortYearDigits) return year;
  return YearOfTwoDigits(*year);
}

std::optional<int> MonthNamed(const Locale& locale, std::string_view name) {
  const auto number = WholeNumber(name);
  return number ? number : locale.MonthNamed(name);
}

std::unique_ptr<CubeLevel> LevelOf(const CubeHierarchy& dates, std::size_t index) {
  if (index >= dates.LevelCount()) {
    throw Failure(failure_number::kItemNotFound,
                  "The date hierarchy " + dates.UniqueName() + " has " +
                      std::to_string(dates.LevelCount()) + " levels; level " +
                      std::to_string(index) +
                      " is needed (0 all, 1 years, 2 any, 3 months, 4 days where there are any)");
  }
  auto level = dates.LevelAt(index);
  if (level->MemberCount() == 0) {
    throw Failure(failure_number::kItemNotFound, "The date level \"" + level->Name() +
                                                     "\" of the cube has no members: the cube "
                                                     "holds no dates");
  }
  return level;
}

std::unique_ptr<CubeMember> FirstMember(const CubeLevel& level) {
  auto first = level.MemberAt(0);
  return first->Name().empty() && level.MemberCount() > 1 ? level.MemberAt(1) : std::move(first);
}

/// Whether the top level holds the years, and the next one what is not years. Where years are told
/// by two digits, those up to 12 cannot be told from quarters and months.
bool HasYearsOnTop(const CubeHierarchy& dates) {
  const auto next = dates.LevelAt(kYearLevel);
  const auto top = dates.LevelAt(0);
  if (next->Time() == LevelTime::kYears || top->MemberCount() == 0) return false;
  if (!YearNamed(FirstMember(*top)->Name())) return false;
  const auto number = WholeNumber(FirstMember(*LevelOf(dates, kYearLevel))->Name());
  return !number || *number <= kLastMonth;
}

/// Another top level does as well as an all level.
void CheckTop(const CubeHierarchy& dates) {
  if (dates.LevelCount() == 0 || dates.LevelAt(0)->IsAll()) return;
  if (dates.LevelCount() > kMonthLevel && !HasYearsOnTop(dates)) return;
  throw Failure(failure_number::kItemNotFound,
                "The date hierarchy " + dates.UniqueName() +
                    " has no all level: years are looked for at level 1, below it, and months at "
                    "level 3. Give it one (hasAll=\"true\") and build the cube again.");
}

std::unique_ptr<CubeMember> LastMember(const CubeLevel& level) {
  return level.MemberAt(level.MemberCount() - 1);
}

using Edge = std::unique_ptr<CubeMember> (*)(const CubeLevel&);

Date EdgeDate(const Locale& locale, const CubeHierarchy& dates, Edge edge) {
  const bool by_month = ByMonth(dates);
  const auto level = LevelOf(dates, by_month ? kMonthLevel : kDayLevel);
  const auto member = edge(*level);
  DateNames names;
  names.year = edge(*LevelOf(dates, kYearLevel))->Name();
  names.month = edge(*LevelOf(dates, kMonthLevel))->Name();
  if (!by_month) names.day = member->Name();
  return DateFromNames(locale, names, by_month, member->UniqueName(), level->Name());
}

std::unique_ptr<CubeMember> ParentOf(const CubeMember& member) {
  auto parent = member.Parent();
  if (!parent) {
    throw Failure(failure_number::kObjectNotSet,
                  "The date member " + member.UniqueName() +
                      " of the cube has no parent, where its month or year should be");
  }
  return parent;
}

DateNames NamesOfMonth(const CubeMember& month) {
  DateNames names;
  names.month = month.Name();
  names.year = ParentOf(*ParentOf(month))->Name();
  return names;
}

DateNames NamesOf(const CubeMember& member, bool by_month) {
  if (by_month) return NamesOfMonth(member);
  DateNames names = NamesOfMonth(*ParentOf(member));
  names.day = member.Name();
  return names;
}

Failure Disorder(const std::string& level, const std::string& member, const std::string& next) {
  return Failure(failure_number::kInvalidCall,
                 "The members of the date level \"" + level +
                     "\" do not follow each other in time: " + next + " stands after " + member +
                     ". Order the level by date, for example by an ordinalColumn in the schema of "
                     "the cube, and build the cube again.");
}

/// Such as a month in two weeks, or days at the level of the months.
Failure SameDate(const std::string& level, const std::string& member, const std::string& next) {
  return Failure(failure_number::kTypeMismatch,
                 "The members " + member + " and " + next + " of the date level \"" + level +
                     "\" have one date: queries would count the first of them alone. Level 3 must "
                     "hold the months, each once, by one name and below one member of level 2 (a "
                     "quarter, not a week); level 4, where there is one, the days, each once. "
                     "Mend the levels and build the cube again.");
}

/// Queries find periods by the order of the members, and one member for a date.
void CheckAscending(const CubeState& cube, const std::string& level) {
  const auto& dates = cube.CubeDates;
  const auto late =
      std::adjacent_find(dates.begin(), dates.end(), [](Date a, Date b) { return !(a < b); });
  if (late == dates.end()) return;
  const auto* member = &cube.CubeDateMembers[static_cast<std::size_t>(late - dates.begin())];
  throw late[0] == late[1] ? SameDate(level, member[0], member[1])
                           : Disorder(level, member[0], member[1]);
}

}  // namespace

Date DateFromNames(const Locale& locale, const DateNames& names, bool by_month,
                   const std::string& member, const std::string& level) {
  const auto day = by_month ? std::optional<int>(1) : WholeNumber(names.day);
  const auto month = MonthNamed(locale, names.month);
  const auto year = YearNamed(names.year);
  if (day && month && year) {
    if (const auto date = CalendarDay(*year, *month, *day)) return *date;
  }
  const std::string text = (by_month ? "" : names.day + "/") + names.month + "/" + names.year;
  throw Failure(failure_number::kTypeMismatch,
                "Type mismatch: \"" + text + "\" is not a date (member \"" + member +
                    "\" of the date level \"" + level +
                    "\"). A year is read from two or four digits, a month from its number or its "
                    "name in your language or in English, full or short, a day from its number. "
                    "Name the cube's date members so.");
}

void ReadDateRange(const Locale& locale, const CubeHierarchy& dates, CubeState& cube) {
  CheckTop(dates);
  CheckDeclaredTimes(dates);
  cube.LastDate = EdgeDate(locale, dates, LastMember);
  cube.FirstDate = EdgeDate(locale, dates, FirstMember);
}

void ReadDateMembers(const Locale& locale, const CubeHierarchy& dates, CubeState& cube) {
  const bool by_month = ByMonth(dates);
  const auto level = LevelOf(dates, by_month ? kMonthLevel : kDayLevel);
  const std::string level_name = level->Name();
  const std::size_t count = level->MemberCount();
  const bool skip_first = !by_month && ParentOf(*level->MemberAt(0))->Name().empty();
  cube.CubeDates.clear();
  cube.CubeDateMembers.clear();
  cube.CubeDates.reserve(count);
  cube.CubeDateMembers.reserve(count);
  for (std::size_t j = skip_first ? 1 : 0; j < count; ++j) {
    const auto member = level->MemberAt(j);
    std::string unique_name = member->UniqueName();
    cube.CubeDates.push_back(
        DateFromNames(locale, NamesOf(*member, by_month), by_month, unique_name, level_name));
    cube.CubeDateMembers.push_back(std::move(unique_name));
  }
  CheckAscending(cube, level_name);
  if (!by_month) CheckDaysAreDays(dates, cube.CubeDates);
}

}  // namespace vok
