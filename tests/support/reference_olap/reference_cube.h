// A cube as vectors of members and facts, read by plain loops: what the engine's answers are
// compared with. Nothing here is the engine's.
#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vok::plain {

struct Member;

/// Empty, or a number.
using Cell = std::optional<double>;
using Members = std::vector<const Member*>;
using Tuple = Members;
using Tuples = std::vector<Tuple>;

struct Fact {
  Members leaves;  ///< of each hierarchy; none of the measures
  Cell id, amount, units, who;
};

/// An aggregation over the fact table, as the schema has it.
struct Measure {
  std::string_view name, column, aggregator;
  Cell Fact::*cell;
};
inline constexpr std::array<Measure, 7> kMeasures = {{
    {"Amount", "amount", "sum", &Fact::amount},
    {"Who", "who", "distinct-count", &Fact::who},
    {"Least", "units", "min", &Fact::units},
    {"Most", "amount", "max", &Fact::amount},
    {"Units", "units", "sum", &Fact::units},
    {"Known", "units", "count", &Fact::units},
    {"Rows", "id", "count", &Fact::id},
}};

/// Where a cell stands: at a member of each hierarchy, the measures being the first, or at several
/// that the slicer takes together.
struct Place {
  std::vector<Members> at;

  Place At(const Tuple& tuple) const;
};

struct Member {
  std::string name;
  std::string unique_name;
  std::size_t hierarchy = 0;
  std::size_t level = 0;
  int place = 0;  ///< in its level
  const Member* parent = nullptr;
  Members children;
  const Measure* measure = nullptr;           ///< of a stored measure
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

struct Cube {
  std::deque<Member> members;  ///< of all hierarchies; those that point at them keep their places
  std::vector<Hierarchy> hierarchies;  ///< the measures, time, then others
  std::vector<Fact> facts;

  const Member& DefaultMember(std::size_t hierarchy) const {
    return *hierarchies[hierarchy].levels.front().members.front();
  }
  Place DefaultPlace() const;
  Cell CellAt(const Place& place) const;
  /// The measure of the place over the facts that belong to any of the tuples.
  Cell TakenTogether(const Place& place, const Tuples& tuples) const;
};

/// "sum", "avg", "min", "max", "count" or "distinct-count" of those that are there; of no values
/// there is nothing, nor of none that is there but a count.
Cell Folded(std::string_view how, const std::vector<Cell>& values);
/// The member and all below it, each before its children.
Members WalkFrom(const Member& member);
bool IsAtOrBelow(const Member* member, const Member& above);
/// With all its digits.
std::string Shown(double number);

}  // namespace vok::plain
