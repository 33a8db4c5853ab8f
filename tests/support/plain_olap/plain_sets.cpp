#include "tests/support/plain_olap/plain_sets.h"

#include <algorithm>
#include <utility>

namespace vok::plain {
namespace {

const Members& LevelOf(const Cube& cube, const Member& member) {
  return cube.hierarchies[member.hierarchy].levels[member.level].members;
}

int PlaceIn(const Members& members, const Member* member) {
  return static_cast<int>(std::find(members.begin(), members.end(), member) - members.begin());
}

Tuples Singles(const Members& members) {
  Tuples tuples;
  for (const Member* member : members) tuples.push_back({member});
  return tuples;
}

/// Puts each tuple before the first that it must stand before.
template <typename Before>
Tuples Inserted(const Tuples& tuples, Before before) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    std::size_t at = order.size();
    while (at > 0 && before(i, order[at - 1])) --at;
    order.insert(order.begin() + static_cast<std::ptrdiff_t>(at), i);
  }
  Tuples sorted;
  for (const std::size_t i : order) sorted.push_back(tuples[i]);
  return sorted;
}

Members ChildrenFirst(const Member& member) {
  Members walk;
  for (const Member* child : member.children) {
    for (const Member* below : ChildrenFirst(*child)) walk.push_back(below);
  }
  walk.push_back(&member);
  return walk;
}

}  // namespace

const Member* Neighbour(const Cube& cube, const Member* member, int distance) {
  if (member == nullptr) return nullptr;
  const Members& level = LevelOf(cube, *member);
  const int place = PlaceIn(level, member) + distance;
  const bool is_there = place >= 0 && place < static_cast<int>(level.size());
  return is_there ? level[static_cast<std::size_t>(place)] : nullptr;
}

const Member* AncestorAt(const Member* member, std::size_t level) {
  while (member != nullptr && member->level > level) member = member->parent;
  return member != nullptr && member->level == level ? member : nullptr;
}

const Member* Parallel(const Cube& cube, std::size_t level, int distance, const Member* member) {
  if (member == nullptr || member->level < level) return nullptr;
  if (member->level == level) return Neighbour(cube, member, -distance);
  const Member* uncle = Parallel(cube, level, distance, member->parent);
  const auto place = static_cast<std::size_t>(PlaceIn(member->parent->children, member));
  return uncle != nullptr && place < uncle->children.size() ? uncle->children[place] : nullptr;
}

Tuples LastPeriods(const Cube& cube, int count, const Member* last) {
  Tuples tuples;
  for (int back = count - 1; back >= 0; --back) {
    const Member* member = Neighbour(cube, last, -back);
    if (member != nullptr) tuples.push_back({member});
  }
  for (int ahead = 0; ahead < -count; ++ahead) {
    const Member* member = Neighbour(cube, last, ahead);
    if (member != nullptr) tuples.push_back({member});
  }
  return tuples;
}

Tuples PeriodsToDate(const Cube& cube, std::size_t level, const Member* last) {
  const Member* whole = AncestorAt(last, level);
  if (whole == nullptr) return {};
  const Members& all = LevelOf(cube, *last);
  Tuples tuples;
  for (const Member* member : all) {
    if (IsAtOrBelow(member, *whole)) tuples.push_back({member});
    if (member == last) break;
  }
  return tuples;
}

Tuples Range(const Cube& cube, const Member* first, const Member* last) {
  if (first == nullptr || last == nullptr) return {};
  const Members& level = LevelOf(cube, *first);
  const std::pair<int, int> ends = std::minmax({PlaceIn(level, first), PlaceIn(level, last)});
  return Singles(Members(level.begin() + ends.first, level.begin() + ends.second + 1));
}

Tuples Descendants(const Cube& cube, const Member& of, std::size_t named, const std::string& flag) {
  const std::size_t deepest = cube.hierarchies[of.hierarchy].levels.size() - 1;
  Members taken;
  for (const Member* member : WalkFrom(of)) {
    const bool is_above = member->level < named;
    const bool is_below = member->level > named;
    const std::string where = is_above ? "BEFORE" : is_below ? "AFTER" : "SELF";
    bool takes = flag.find(where) != std::string::npos;
    if (flag == "LEAVES") takes = named >= deepest && member->level == deepest;
    if (takes) taken.push_back(member);
  }
  return Singles(taken);
}

bool Contains(const Tuples& tuples, const Tuple& tuple) {
  return std::find(tuples.begin(), tuples.end(), tuple) != tuples.end();
}

Tuples Together(Tuples first, const Tuples& second) {
  for (const Tuple& tuple : second) first.push_back(tuple);
  return first;
}

Tuples Once(const Tuples& tuples) {
  Tuples once;
  for (const Tuple& tuple : tuples) {
    if (!Contains(once, tuple)) once.push_back(tuple);
  }
  return once;
}

Tuples Pairs(const Tuples& first, const Tuples& second) {
  Tuples pairs;
  for (const Tuple& a : first) {
    for (const Tuple& b : second) {
      pairs.push_back(a);
      for (const Member* member : b) pairs.back().push_back(member);
    }
  }
  return pairs;
}

Tuples Among(const Tuples& tuples, const Tuples& other, bool wanted) {
  Tuples among;
  for (const Tuple& tuple : tuples) {
    if (Contains(other, tuple) == wanted) among.push_back(tuple);
  }
  return among;
}

Tuples Part(const Tuples& tuples, int begin, int count) {
  Tuples part;
  const int size = static_cast<int>(tuples.size());
  for (int i = begin; begin >= 0 && i < begin + count && i < size; ++i) {
    part.push_back(tuples[static_cast<std::size_t>(i)]);
  }
  return part;
}

Tuples Hierarchized(const Cube& cube, const Tuples& tuples, bool children_first) {
  const auto place = [&](const Member& member) {
    Members walk;
    for (const Member* top : cube.hierarchies[member.hierarchy].levels.front().members) {
      for (const Member* each : children_first ? ChildrenFirst(*top) : WalkFrom(*top)) {
        walk.push_back(each);
      }
    }
    return PlaceIn(walk, &member);
  };
  std::vector<std::vector<int>> places;
  for (const Tuple& tuple : tuples) {
    places.emplace_back();
    for (const Member* member : tuple) places.back().push_back(place(*member));
  }
  return Inserted(tuples, [&](std::size_t a, std::size_t b) { return places[a] < places[b]; });
}

bool IsLess(const Cell& a, const Cell& b) { return !a || !b ? !a && b : *a < *b; }

Tuples Sorted(const Tuples& tuples, const std::vector<Cell>& values, bool descending) {
  return Inserted(tuples, [&](std::size_t a, std::size_t b) {
    return descending ? IsLess(values[b], values[a]) : IsLess(values[a], values[b]);
  });
}

Tuples SiblingsSorted(const Cube& cube, const Tuples& tuples, bool descending,
                      const std::function<Cell(const Tuple&)>& value) {
  const auto before = [&](std::size_t a, std::size_t b) {
    for (std::size_t i = 0; i < tuples[a].size(); ++i) {
      const Member* x = tuples[a][i];
      const Member* y = tuples[b][i];
      if (x == y) continue;
      if (IsAtOrBelow(y, *x)) return true;
      if (IsAtOrBelow(x, *y)) return false;
      while (x->level > y->level) x = x->parent;
      while (y->level > x->level) y = y->parent;
      for (; x->parent != y->parent; y = y->parent) x = x->parent;
      Tuple at(tuples[a].begin(), tuples[a].begin() + static_cast<std::ptrdiff_t>(i));
      at.push_back(x);
      const Cell first = value(at);
      at.back() = y;
      const Cell second = value(at);
      if (IsLess(first, second)) return !descending;
      if (IsLess(second, first)) return descending;
      const Members& level = LevelOf(cube, *x);
      return PlaceIn(level, x) < PlaceIn(level, y);
    }
    return false;
  };
  return Inserted(tuples, before);
}

}  // namespace vok::plain
