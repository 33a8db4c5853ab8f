#include "cube/date_list.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "cube/date_names.h"
#include "platform/failure.h"

namespace vok {
namespace {

// Levels by position; level 0 is "(All)", level 2 is passed over.
constexpr std::size_t kYearLevel = 1;
constexpr std::size_t kMonthLevel = 3;
constexpr std::size_t kDayLevel = 4;

bool ByMonth(const CubeHierarchy& dates) { return dates.LevelCount() <= kDayLevel; }

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

/// Such as months that are sorted by their names.
void CheckAscending(const CubeState& cube, const std::string& level) {
  const auto& dates = cube.CubeDates;
  const auto earlier = std::is_sorted_until(dates.begin(), dates.end());
  if (earlier == dates.end()) return;
  const auto& members = cube.CubeDateMembers;
  const auto index = static_cast<std::size_t>(earlier - dates.begin());
  throw Failure(failure_number::kInvalidCall,
                "The members of the date level \"" + level +
                    "\" do not follow each other in time: " + members[index] + " stands after " +
                    members[index - 1] +
                    ". Order the level by date, for example by an ordinalColumn in the schema of "
                    "the cube, and build the cube again.");
}

}  // namespace

void ReadDateRange(const Locale& locale, const CubeHierarchy& dates, CubeState& cube) {
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
}

}  // namespace vok
