// A cube as vectors of members and facts, read by plain loops: what the engine's answers are
// compared with. Nothing here is the engine's.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vok::plain {

struct Member;

/// Empty, or a number.
using Cell = std::optional<double>;
using Members = std::vector<const Member*>;

/// Where a cell stands: a member of each hierarchy, the measures being the first.
struct Place {
  Members at;
  /// The slicer's members of a hierarchy that are taken together, in place of the one in `at`.
  std::vector<Members> together;

  void Set(const Member& member);
};

enum class Measure { kAmount, kUnits, kRows, kKnown, kLeast, kMost, kWho };

struct Member {
  std::string name;
  std::string unique_name;
  std::size_t hierarchy = 0;
  std::size_t level = 0;
  const Member* parent = nullptr;
  Members children;
  Measure measure = Measure::kAmount;         ///< of a stored measure
  std::function<Cell(const Place&)> formula;  ///< of a calculated member
  int solve_order = 0;
};

struct Level {
  std::string name;  ///< "[Time].[Year]"
  std::string kind;  ///< "TimeYears"
  Members members;
};

struct Hierarchy {
  std::string name;  ///< "[Time]", "[Line].[Second]"
  std::vector<Level> levels;
};

struct Fact {
  Members leaves;  ///< of each hierarchy; none of the measures
  Cell amount, units, who;
};

struct Cube {
  std::deque<Member> members;  ///< of all hierarchies; those that point at them keep their places
  std::vector<Hierarchy> hierarchies;  ///< the measures, time, then others
  std::vector<Fact> facts;

  const Member& DefaultMember(std::size_t hierarchy) const {
    return *hierarchies[hierarchy].levels.front().members.front();
  }
  Place DefaultPlace() const;
  /// Empty where a member is missing.
  Cell CellAt(const Place& place) const;
  /// The measure of the place over the facts that belong to any of the tuples.
  Cell TakenTogether(const Place& place, const std::vector<Members>& tuples) const;
};

/// All members of a hierarchy, parents before their children.
Members Walk(const Hierarchy& hierarchy);
/// The member and all below it, each before its children.
Members WalkFrom(const Member& member);
bool IsAtOrBelow(const Member* member, const Member& above);

}  // namespace vok::plain
