// What the functions of MDX on members and sets give, word for word.
#pragma once

#include <string>
#include <vector>

#include "tests/support/plain_olap/plain_cube.h"

namespace vok::plain {

using Tuple = Members;
using Tuples = std::vector<Tuple>;

/// `distance` places on in its level; nullptr beyond the ends, or of nullptr.
const Member* Neighbour(const Cube& cube, const Member* member, int distance);
/// The member itself or the one above it in the level; nullptr when it is above the level.
const Member* AncestorAt(const Member* member, std::size_t level);
const Member* Parallel(const Cube& cube, std::size_t level, int distance, const Member* member);

Tuples LastPeriods(const Cube& cube, int count, const Member* last);
Tuples PeriodsToDate(const Cube& cube, std::size_t level, const Member* last);
Tuples Range(const Cube& cube, const Member* first, const Member* last);
/// `flag` as MDX writes it; `named` counts from the top.
Tuples Descendants(const Cube& cube, const Member& of, std::size_t named, const std::string& flag);

bool Contains(const Tuples& tuples, const Tuple& tuple);
Tuples Together(Tuples first, const Tuples& second);
Tuples Once(const Tuples& tuples);
Tuples Pairs(const Tuples& first, const Tuples& second);
/// Those that `other` has, or has not.
Tuples Among(const Tuples& tuples, const Tuples& other, bool wanted);
/// From the place `begin` on, at most `count`; none for numbers below 0.
Tuples Part(const Tuples& tuples, int begin, int count);
Tuples Hierarchized(const Cube& cube, const Tuples& tuples, bool children_first);

/// Whether the first value comes first; an empty one is least.
bool IsLess(const Cell& a, const Cell& b);
/// The tuples by their values, equal ones as they are.
Tuples Sorted(const Tuples& tuples, const std::vector<Cell>& values, bool descending);
/// Siblings by the value at each, with what is below them.
Tuples SiblingsSorted(const Cube& cube, const Tuples& tuples, bool descending,
                      const std::function<Cell(const Tuple&)>& value);

}  // namespace vok::plain
