// Members and sets.
#include <algorithm>
#include <limits>
#include <utility>

#include "tests/support/reference_olap/forms.h"

namespace vok::plain {
namespace {

const Members& LevelOf(const Cube& cube, const Member& member) {
  return cube.hierarchies[member.hierarchy].levels[member.level].members;
}

const Member* At(const Members& members, int place) {
  const bool is_there = place >= 0 && place < static_cast<int>(members.size());
  return is_there ? members[static_cast<std::size_t>(place)] : nullptr;
}

/// The member itself, its parent, ..., the top.
Members PathFrom(const Member* member) {
  Members path;
  for (; member != nullptr; member = member->parent) path.push_back(member);
  return path;
}

/// So many places on in its level.
const Member* Moved(const Call& call, const Member* member, int distance) {
  return member ? At(LevelOf(call.cube, *member), member->place + distance) : nullptr;
}

const Member* Kin(const Call& call) {
  const std::string& word = call.Word(1);
  if (word == "DefaultMember") return &call.cube.DefaultMember(call.Set(0)[0][0]->hierarchy);
  const Member* member = call.One(0);
  if (member == nullptr || word == "CurrentMember") return member;
  if (word == "Parent") return member->parent;
  if (word == "PrevMember") return Moved(call, member, -1);
  if (word == "NextMember") return Moved(call, member, 1);
  return At(member->children,
            word == "FirstChild" ? 0 : static_cast<int>(member->children.size()) - 1);
}

const Member* AncestorAt(const Member* member, int level) {
  const Members path = PathFrom(member);
  return At(path, static_cast<int>(path.size()) - 1 - level);
}

const Member* Parallel(const Call& call, int level, int distance, const Member* member) {
  if (AncestorAt(member, level) == nullptr) return nullptr;
  if (AncestorAt(member, level) == member) return Moved(call, member, -distance);
  const Member* uncle = Parallel(call, level, distance, member->parent);
  const int place = member->place - member->parent->children[0]->place;
  return uncle ? At(uncle->children, place) : nullptr;
}

Tuples Together(Tuples first, const Tuples& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

Tuples TwoTogether(const Call& call) { return Together(call.Set(0), call.Set(1)); }

Tuples AllMembers(const Call& call) {
  Tuples all;
  for (const Member* top : call.cube.hierarchies[call.Set(0)[0][0]->hierarchy].levels[0].members) {
    all = Together(all, Singles(WalkFrom(*top)));
  }
  return all;
}

Tuples Itself(const Call& call) { return call.Set(0); }

Tuples Children(const Call& call) {
  return call.One(0) == nullptr ? Tuples() : Singles(call.One(0)->children);
}

Tuples Range(const Call& call) {
  const Members& level = LevelOf(call.cube, *call.One(0));
  const auto ends = std::minmax({call.One(0)->place, call.One(1)->place});
  return Singles(Members(level.begin() + ends.first, level.begin() + ends.second + 1));
}

Tuples LastPeriods(const Call& call) {
  const int count = call.Whole(0);
  const Member* last = call.One(1);
  Tuples tuples;
  for (int i = count > 0 ? 1 - count : 0; i < (count > 0 ? 1 : -count); ++i) {
    if (const Member* member = Moved(call, last, i)) tuples.push_back({member});
  }
  return tuples;
}

Tuples PeriodsToDate(const Call& call) {
  const Member* last = call.One(1);
  const Member* whole = AncestorAt(last, call.Whole(0));
  if (whole == nullptr) return {};
  Tuples tuples;
  for (const Member* member : LevelOf(call.cube, *last)) {
    if (IsAtOrBelow(member, *whole)) tuples.push_back({member});
    if (member == last) break;
  }
  return tuples;
}

bool Contains(const Tuples& tuples, const Tuple& tuple) {
  return std::find(tuples.begin(), tuples.end(), tuple) != tuples.end();
}

Tuples Once(const Tuples& tuples) {
  Tuples once;
  for (const Tuple& tuple : tuples) {
    if (!Contains(once, tuple)) once.push_back(tuple);
  }
  return once;
}

/// Of levels by number, or of so many levels below each.
template <bool kByLevel>
Tuples Descendants(const Call& call) {
  const std::string& flag = call.Word(2);
  Tuples taken;
  for (const Tuple& top : call.Set(0)) {
    const auto named = static_cast<std::size_t>(call.Whole(1)) + (kByLevel ? 0 : top[0]->level);
    const std::size_t deepest = call.cube.hierarchies[top[0]->hierarchy].levels.size() - 1;
    for (const Member* member : WalkFrom(*top[0])) {
      const std::string where = member->level < named   ? "BEFORE"
                                : member->level > named ? "AFTER"
                                                        : "SELF";
      const bool is_wanted_leaf = named >= deepest && member->level == deepest;
      if (flag == "LEAVES" ? is_wanted_leaf : flag.find(where) != flag.npos) {
        taken.push_back({member});
      }
    }
  }
  return Once(taken);
}

Tuples Crossed(const Call& call) { return Pairs(call.Set(0), call.Set(1)); }

Tuples Among(const Tuples& tuples, const Tuples& other, bool wanted) {
  Tuples among;
  for (const Tuple& tuple : tuples) {
    if (Contains(other, tuple) == wanted) among.push_back(tuple);
  }
  return among;
}

/// From the place `begin` on, at most `count`; none for numbers below 0.
Tuples Part(const Tuples& tuples, int begin, int count) {
  const int size = static_cast<int>(tuples.size());
  if (begin < 0 || begin >= size || count <= 0) return {};
  return Tuples(tuples.begin() + begin, tuples.begin() + begin + std::min(count, size - begin));
}

Tuples Filtered(const Call& call) {
  Tuples kept;
  for (const Tuple& tuple : call.Set(0)) {
    if (call.Holds(1, tuple)) kept.push_back(tuple);
  }
  return kept;
}

using SortKey = std::vector<double>;

/// Empty is least.
SortKey KeyOf(const Cell& value, bool descending) {
  const double sign = descending ? -1 : 1;
  return {value ? sign : 0, sign * value.value_or(0)};
}

template <typename Key>
Tuples SortedBy(const Tuples& tuples, Key key) {
  std::vector<std::pair<decltype(key(Tuple())), Tuple>> keyed;
  for (const Tuple& tuple : tuples) keyed.emplace_back(key(tuple), tuple);
  std::stable_sort(keyed.begin(), keyed.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  Tuples sorted;
  for (const auto& each : keyed) sorted.push_back(each.second);
  return sorted;
}

Tuples Sorted(const Tuples& tuples, bool descending, const ValueAt& value) {
  return SortedBy(tuples, [&](const Tuple& tuple) { return KeyOf(value(tuple), descending); });
}

/// As the hierarchies stand, siblings by the value at each; a member before its children or after.
Tuples SortedWithin(const Call& call, bool descending, const ValueAt& value, bool children_first) {
  return SortedBy(call.Set(0), [&](const Tuple& tuple) {
    std::vector<std::vector<SortKey>> keys;  // of each member: of those from the top to it
    for (std::size_t i = 0; i < tuple.size(); ++i) {
      Tuple at(tuple.begin(), tuple.begin() + static_cast<std::ptrdiff_t>(i) + 1);
      auto& path = keys.emplace_back();
      if (children_first) path.push_back({std::numeric_limits<double>::infinity()});
      for (const Member* member : PathFrom(tuple[i])) {
        at.back() = member;
        path.insert(path.begin(), KeyOf(value(at), descending));
        path.front().push_back(member->place);
      }
    }
    return keys;
  });
}

/// By the value, or by its negative.
template <int kSign>
Tuples Ordered(const Call& call) {
  const std::string& flag = call.Word(2);
  const bool descending = flag.find("DESC") != flag.npos;
  const auto value = [&](const Tuple& tuple) {
    const Cell cell = call.Number(1, tuple);
    return cell ? Cell(kSign * *cell) : cell;
  };
  if (flag.find('B') != flag.npos) return Sorted(call.Set(0), descending, value);
  return SortedWithin(call, descending, value, false);
}

Tuples Hierarchized(const Call& call) {
  const auto none = [](const Tuple&) { return Cell(); };
  return SortedWithin(call, false, none, !call.Word(1).empty());
}

Tuples Tail(const Call& call) {
  const Tuples all = call.Set(0);
  const int size = static_cast<int>(all.size());
  return Part(all, std::max(size - call.Whole(1), 0), call.Whole(1));
}

}  // namespace

Tuples Singles(const Members& members) {
  Tuples tuples;
  for (const Member* member : members) tuples.push_back({member});
  return tuples;
}

Tuples Pairs(const Tuples& first, const Tuples& second) {
  Tuples pairs;
  for (const Tuple& a : first) {
    for (const Tuple& b : second) {
      pairs.push_back(a);
      pairs.back().insert(pairs.back().end(), b.begin(), b.end());
    }
  }
  return pairs;
}

const Forms kMemberForms = {
    {{"%d", Itself}},
    {{"%h.%(CurrentMember|DefaultMember|Parent|FirstChild|LastChild|PrevMember|NextMember)", Kin},
     {"%m.%(Parent|FirstChild|LastChild|PrevMember|NextMember)", Kin},
     {"%m.%(Parent|FirstChild|LastChild|PrevMember|NextMember)", Kin},
     {"%m.Lag(%n)", [](const Call& c) { return Moved(c, c.One(0), -c.Whole(1)); }},
     {"%m.Lead(%n)", [](const Call& c) { return Moved(c, c.One(0), c.Whole(1)); }},
     {"Ancestor(%m, %l)", [](const Call& c) { return AncestorAt(c.One(0), c.Whole(1)); }},
     {"Ancestor(%m, %n)", [](const Call& c) { return At(PathFrom(c.One(0)), c.Whole(1)); }},
     {"ParallelPeriod(%l, %n, %m)",
      [](const Call& c) { return Parallel(c, c.Whole(0), c.Whole(1), c.One(2)); }}}};

#define VOK_LEVELS "SELF|AFTER|BEFORE|BEFORE_AND_AFTER|SELF_AND_AFTER|SELF_AND_BEFORE"

const Forms kSetForms = {
    {{"%h.Members", AllMembers},
     {"%l.Members", Itself},
     {"%l.Members", Itself},
     {"%m.Children", Children},
     {"{%m}", Itself},
     {"{%d : %e}", Range},
     {"LastPeriods(%n, %m)", LastPeriods},
     {"PeriodsToDate(%l, %m)", PeriodsToDate},
     {"%P(%m)", PeriodsToDate},
     {"Descendants(%m, %l, %(" VOK_LEVELS "|LEAVES))", Descendants<true>},
     {"Descendants(%1, %l, %(" VOK_LEVELS "|SELF_BEFORE_AFTER))", Descendants<true>},
     {"Descendants(%m, %k, %(" VOK_LEVELS "|SELF_BEFORE_AFTER))", Descendants<false>},
     {"Union(%s, %s)", [](const Call& c) { return Once(TwoTogether(c)); }},
     {"Intersect(%s, %s)", [](const Call& c) { return Once(Among(c.Set(0), c.Set(1), true)); }},
     {"Except(%s, %s)", [](const Call& c) { return Among(c.Set(0), c.Set(1), false); }},
     {"Distinct(%s)", [](const Call& c) { return Once(c.Set(0)); }},
     {"Head(%s, %n)", [](const Call& c) { return Part(c.Set(0), 0, c.Whole(1)); }},
     {"Tail(%s, %n)", Tail},
     {"Subset(%s, %n, %n)", [](const Call& c) { return Part(c.Set(0), c.Whole(1), c.Whole(2)); }},
     {"Subset(%s, %n)", [](const Call& c) { return Part(c.Set(0), c.Whole(1), 1000000); }},
     {"Hierarchize(%s%(|, POST))", Hierarchized},
     {"Filter(%s, %c)", Filtered},
     {"TopCount(%s, %k, %v)",
      [](const Call& c) { return Part(Sorted(c.Set(0), true, c.Values(2)), 0, c.Whole(1)); }},
     {"BottomCount(%s, %k, %v)",
      [](const Call& c) { return Part(Sorted(c.Set(0), false, c.Values(2)), 0, c.Whole(1)); }},
     // By a tuple alone another server orders the tuples and not their values.
     {"Order(%s, -(%v)%(|, DESC|, BASC|, BDESC))", Ordered<-1>}},
    {{"{%m, %m}", TwoTogether},
     {"{%s, %s}", TwoTogether},
     {"Union(%s, %s, ALL)", TwoTogether},
     {"Intersect(%s, %s, ALL)", [](const Call& c) { return Among(c.Set(0), c.Set(1), true); }},
     {"({%s} + {%s})", [](const Call& c) { return Once(TwoTogether(c)); }},
     {"({%s} - {%s})", [](const Call& c) { return Among(c.Set(0), c.Set(1), false); }},
     {"Descendants(%1, %k, %(LEAVES))", Descendants<false>},
     {"Order(%s, %v%(|, DESC))", Ordered<1>},
     {"Order(%s, %v%(|, DESC))", Ordered<1>},
     {"Order(%s, %v, %(BASC|BDESC))", Ordered<1>},
     {"{(%m, %w)}", Crossed},
     {"CrossJoin(%1, %2)", Crossed},
     {"{%1} * {%2}", Crossed}}};

}  // namespace vok::plain
