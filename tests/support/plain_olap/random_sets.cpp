// Random members and sets.
#include <map>
#include <utility>

#include "tests/support/plain_olap/random_mdx.h"

namespace vok::plain {
namespace {

SetTerm Listed(const std::vector<MemberTerm>& members) {
  std::string text;
  for (const MemberTerm& member : members) text += (text.empty() ? "{" : ", ") + member.text;
  return {text + "}", [members](const Place& place) {
            Tuples tuples;
            for (const MemberTerm& member : members) {
              if (const Member* there = member.at(place)) tuples.push_back({there});
            }
            return tuples;
          }};
}

Place Moved(const Place& place, const Tuple& tuple) {
  Place moved = place;
  for (const Member* member : tuple) moved.Set(*member);
  return moved;
}

SetTerm Constant(std::string text, const Members& members) {
  Tuples tuples;
  for (const Member* member : members) tuples.push_back({member});
  return {std::move(text), [tuples](const Place&) { return tuples; }};
}

}  // namespace

const Member& RandomMdx::Stored(std::size_t hierarchy) {
  return *dice_.OneOf(dice_.OneOf(cube_.hierarchies[hierarchy].levels).members);
}

/// One, or a pair of them.
Hierarchies RandomMdx::AnyHierarchies() {
  const std::size_t first = AnyHierarchy();
  const std::size_t second = AnyHierarchy();
  return tame_ || first == second || !dice_.OneIn(3) ? Hierarchies{first}
                                                     : Hierarchies{first, second};
}

std::size_t RandomMdx::AnyLevel(std::size_t hierarchy) {
  return static_cast<std::size_t>(
      dice_.Below(static_cast<int>(cube_.hierarchies[hierarchy].levels.size())));
}

MemberTerm RandomMdx::AMember(std::size_t hierarchy, int depth) {
  if (depth > 0 && !tame_ && !dice_.OneIn(3)) return MovedMember(hierarchy, depth - 1);
  const std::string& name = cube_.hierarchies[hierarchy].name;
  const auto current = [hierarchy](const Place& place) { return place.at[hierarchy]; };
  const Member* first = &cube_.DefaultMember(hierarchy);
  const auto constant = [first](const Place&) { return first; };
  // By its name, for one who does not know it again as the default or current member.
  const MemberTerm named = {first->unique_name, constant};
  if (dice_.OneIn(4)) return tame_ ? named : MemberTerm{name + ".CurrentMember", current};
  if (!tame_ && dice_.OneIn(8)) return {name, current};
  if (dice_.OneIn(8)) return tame_ ? named : MemberTerm{name + ".DefaultMember", constant};
  const Member& stored = Stored(hierarchy);
  return {stored.unique_name, [&stored](const Place&) { return &stored; }};
}

MemberTerm RandomMdx::MovedMember(std::size_t hierarchy, int depth) {
  const MemberTerm from = AMember(hierarchy, depth);
  const int distance = dice_.Below(6) - 2;
  const std::size_t level = AnyLevel(hierarchy);
  const std::string& level_name = cube_.hierarchies[hierarchy].levels[level].name;
  const std::string number = std::to_string(distance);
  const auto moved = [&](const std::string& text, auto move) {
    return MemberTerm{text, [from, move](const Place& place) {
                        const Member* member = from.at(place);
                        return member == nullptr ? nullptr : move(member);
                      }};
  };
  const auto step = [this](int by) {
    return [this, by](const Member* m) { return Neighbour(cube_, m, by); };
  };
  const auto child = [](bool last) {
    return [last](const Member* m) -> const Member* {
      if (m->children.empty()) return nullptr;
      return last ? m->children.back() : m->children.front();
    };
  };
  switch (dice_.Below(10)) {
    case 0:
      return moved(from.text + ".Parent", [](const Member* m) { return m->parent; });
    case 1:
      return moved(from.text + ".FirstChild", child(false));
    case 2:
      return moved(from.text + ".LastChild", child(true));
    case 3:
      return moved(from.text + ".PrevMember", step(-1));
    case 4:
      return moved(from.text + ".NextMember", step(1));
    case 5:
      return moved(from.text + ".Lag(" + number + ")", step(-distance));
    case 6:
      return moved(from.text + ".Lead(" + number + ")", step(distance));
    case 7:
      return moved("Ancestor(" + from.text + ", " + level_name + ")",
                   [level](const Member* m) { return AncestorAt(m, level); });
    case 8:
      return moved("Ancestor(" + from.text + ", " + number + ")",
                   [distance](const Member* m) -> const Member* {
                     const int to = static_cast<int>(m->level) - distance;
                     if (distance < 0 || to < 0) return nullptr;
                     return AncestorAt(m, static_cast<std::size_t>(to));
                   });
    default:
      return moved(
          "ParallelPeriod(" + level_name + ", " + number + ", " + from.text + ")",
          [this, level, distance](const Member* m) { return Parallel(cube_, level, distance, m); });
  }
}

SetTerm RandomMdx::Set(const Hierarchies& hierarchies, int depth) {
  if (named_of_ == hierarchies && dice_.OneIn(6)) {
    return {"[some]", [this](const Place&) { return named_; }};
  }
  const int kind = dice_.Below(depth > 0 ? 6 : 1);
  if (kind == 1) return CombinedSet(hierarchies, depth - 1);
  if (kind == 2) return PartOfSet(hierarchies, depth - 1);
  if (kind == 3) return ValuedSet(hierarchies, depth - 1);
  if (hierarchies.size() > 1) return SetOfTuples(hierarchies, depth - 1);
  return SetOfMembers(hierarchies[0], depth - 1);
}

SetTerm RandomMdx::SetOfMembers(std::size_t hierarchy, int depth) {
  const Hierarchy& of = cube_.hierarchies[hierarchy];
  const Level& level = of.levels[AnyLevel(hierarchy)];
  const MemberTerm member = AMember(hierarchy, depth);
  switch (dice_.Below(9)) {
    case 0:
      return Constant(of.name + ".Members", Walk(of));
    case 1:
    case 2:
      return Constant(level.name + ".Members", level.members);
    case 3:
      return {member.text + ".Children", [member](const Place& place) {
                const Member* parent = member.at(place);
                Tuples tuples;
                if (parent == nullptr) return tuples;
                for (const Member* child : parent->children) tuples.push_back({child});
                return tuples;
              }};
    case 4:
      if (tame_) return Listed({member});
      return Listed({member, AMember(hierarchy, depth), AMember(hierarchy, depth)});
    case 5: {
      const Members& all = level.members;
      const Member* first = dice_.OneOf(all);
      const Member* last = dice_.OneOf(all);
      return {"{" + first->unique_name + " : " + last->unique_name + "}",
              [this, first, last](const Place&) { return Range(cube_, first, last); }};
    }
    case 6: {
      const int count = dice_.Below(7) - 2;
      return {"LastPeriods(" + std::to_string(count) + ", " + member.text + ")",
              [this, count, member](const Place& place) {
                return LastPeriods(cube_, count, member.at(place));
              }};
    }
    case 7:
      if (hierarchy == 1) return SetOfTime(depth);
      return Listed({member});
    default:
      return SetOfDescendants(hierarchy, depth);
  }
}

SetTerm RandomMdx::SetOfTime(int depth) {
  const MemberTerm member = AMember(1, depth);
  const auto& levels = cube_.hierarchies[1].levels;
  std::size_t level = AnyLevel(1);
  const auto to_date = [&](const std::string& text) {
    return SetTerm{text, [this, level, member](const Place& place) {
                     return PeriodsToDate(cube_, level, member.at(place));
                   }};
  };
  const int kind = dice_.Below(4);
  if (kind > 1) {
    const std::string wanted = kind == 2 ? "TimeYears" : "TimeQuarters";
    for (level = 0; level < levels.size() && levels[level].kind != wanted;) ++level;
    if (level < levels.size()) return to_date((kind == 2 ? "Ytd(" : "Qtd(") + member.text + ")");
    level = AnyLevel(1);
  }
  return to_date("PeriodsToDate(" + levels[level].name + ", " + member.text + ")");
}

SetTerm RandomMdx::SetOfDescendants(std::size_t hierarchy, int depth) {
  static const Words kFlags = {"SELF",
                               "AFTER",
                               "BEFORE",
                               "BEFORE_AND_AFTER",
                               "SELF_AND_AFTER",
                               "SELF_AND_BEFORE",
                               "SELF_BEFORE_AFTER",
                               "LEAVES"};
  const MemberTerm one = AMember(hierarchy, depth);
  const SetTerm of = dice_.OneIn(4) ? Set({hierarchy}, depth) : Listed({one});
  const std::string flag = dice_.OneOf(kFlags);
  const std::size_t level = AnyLevel(hierarchy);
  const bool by_level = dice_.OneIn(2) || (tame_ && flag == "LEAVES");
  const int distance = by_level ? -1 : dice_.Below(3);
  const std::string named =
      distance >= 0 ? std::to_string(distance) : cube_.hierarchies[hierarchy].levels[level].name;
  const std::string& of_text = of.text == "{" + one.text + "}" ? one.text : of.text;
  return {"Descendants(" + of_text + ", " + named + ", " + flag + ")",
          [this, of, level, distance, flag](const Place& place) {
            const Tuples tops = of.at(place);
            Tuples all;
            for (const Tuple& top : tops) {
              const auto below = top[0]->level + static_cast<std::size_t>(std::max(distance, 0));
              all = Together(all, Descendants(cube_, *top[0], distance < 0 ? level : below, flag));
            }
            return Once(all);
          }};
}

SetTerm RandomMdx::SetOfTuples(const Hierarchies& hierarchies, int depth) {
  if (dice_.OneIn(3)) {
    const MemberTerm a = AMember(hierarchies[0], depth);
    const MemberTerm b = AMember(hierarchies[1], depth);
    return {"{(" + a.text + ", " + b.text + ")}", [a, b](const Place& place) {
              const Tuple tuple = {a.at(place), b.at(place)};
              return tuple[0] && tuple[1] ? Tuples{tuple} : Tuples{};
            }};
  }
  const SetTerm first = Set({hierarchies[0]}, depth);
  return CrossedSets(first, Set({hierarchies[1]}, depth));
}

SetTerm RandomMdx::CrossedSets(const SetTerm& a, const SetTerm& b) {
  const std::string text = dice_.OneIn(2) ? "CrossJoin(" + a.text + ", " + b.text + ")"
                                          : "{" + a.text + "} * {" + b.text + "}";
  return {text, [a, b](const Place& place) { return Pairs(a.at(place), b.at(place)); }};
}

SetTerm RandomMdx::CombinedSet(const Hierarchies& hierarchies, int depth) {
  const SetTerm a = Set(hierarchies, depth);
  const SetTerm b = Set(hierarchies, depth);
  const std::string both = "(" + a.text + ", " + b.text;
  const auto combined = [&](const std::string& text, auto combine) {
    return SetTerm{
        text, [a, b, combine](const Place& place) { return combine(a.at(place), b.at(place)); }};
  };
  const auto together = [](const Tuples& x, const Tuples& y) { return Together(x, y); };
  const auto once = [](const Tuples& x, const Tuples& y) { return Once(Together(x, y)); };
  const auto except = [](const Tuples& x, const Tuples& y) { return Among(x, y, false); };
  switch (dice_.Below(tame_ ? 3 : 8)) {
    case 0:
      return combined("Union" + both + ")", once);
    case 1:
      return combined("Except" + both + ")", except);
    case 2:
      return combined("Intersect" + both + ")",
                      [](const Tuples& x, const Tuples& y) { return Once(Among(x, y, true)); });
    case 3:
      return combined("Intersect" + both + ", ALL)",
                      [](const Tuples& x, const Tuples& y) { return Among(x, y, true); });
    case 4:
      return combined("Union" + both + ", ALL)", together);
    case 5:
      return combined("{" + a.text + ", " + b.text + "}", together);
    case 6:
      return combined("({" + a.text + "} + {" + b.text + "})", once);
    default:
      return combined("({" + a.text + "} - {" + b.text + "})", except);
  }
}

SetTerm RandomMdx::PartOfSet(const Hierarchies& hierarchies, int depth) {
  const SetTerm set = Set(hierarchies, depth);
  const int begin = dice_.Below(5) - (tame_ ? 0 : 1);
  const int count = dice_.Below(6) - (tame_ ? 0 : 1);
  const std::string number = ", " + std::to_string(count);
  const auto part = [&](const std::string& text, auto take) {
    return SetTerm{text, [set, take](const Place& place) { return take(set.at(place)); }};
  };
  const auto head = [begin, count](const Tuples& all) { return Part(all, begin, count); };
  switch (dice_.Below(7)) {
    case 0:
      return part("Distinct(" + set.text + ")", Once);
    case 1:
      return part("Head(" + set.text + number + ")",
                  [count](const Tuples& all) { return Part(all, 0, count); });
    case 2:
      return part("Tail(" + set.text + number + ")", [count](const Tuples& all) {
        const int size = static_cast<int>(all.size());
        return Part(all, std::max(size - std::max(count, 0), 0), count);
      });
    case 3:
      return part("Subset(" + set.text + ", " + std::to_string(begin) + number + ")", head);
    case 4:
      return part(
          "Subset(" + set.text + ", " + std::to_string(begin) + ")",
          [begin](const Tuples& all) { return Part(all, begin, static_cast<int>(all.size())); });
    case 5:
      return part("Hierarchize(" + set.text + ")",
                  [this](const Tuples& all) { return Hierarchized(cube_, all, false); });
    default:
      return part("Hierarchize(" + set.text + ", POST)",
                  [this](const Tuples& all) { return Hierarchized(cube_, all, true); });
  }
}

SetTerm RandomMdx::ValuedSet(const Hierarchies& hierarchies, int depth) {
  static const Words kFlags = {", BASC)", ", BDESC)", ")", ", DESC)"};
  const SetTerm set = Set(hierarchies, depth);
  const NumberTerm value = Number(depth);
  const auto values = [set, value](const Place& place, const Tuples& tuples) {
    std::vector<Cell> cells;
    for (const Tuple& tuple : tuples) cells.push_back(value.at(Moved(place, tuple)));
    return cells;
  };
  const int kind = dice_.Below(4);
  if (kind == 0) {
    const ConditionTerm taken = Condition(depth);
    return {"Filter(" + set.text + ", " + taken.text + ")", [set, taken](const Place& place) {
              Tuples kept;
              for (const Tuple& tuple : set.at(place)) {
                if (taken.at(Moved(place, tuple))) kept.push_back(tuple);
              }
              return kept;
            }};
  }
  if (kind == 1) {
    const int count = dice_.Below(6) + (tame_ ? 1 : 0);
    const bool top = dice_.OneIn(2);
    return {(top ? "TopCount(" : "BottomCount(") + set.text + ", " + std::to_string(count) + ", " +
                value.text + ")",
            [set, values, count, top](const Place& place) {
              const Tuples all = set.at(place);
              return Part(Sorted(all, values(place, all), top), 0, count);
            }};
  }
  const int flag = dice_.Below(4);
  const bool descending = flag % 2 == 1;
  return {"Order(" + set.text + ", " + value.text + kFlags[static_cast<std::size_t>(flag)],
          [this, set, value, values, flag, descending](const Place& place) {
            const Tuples all = set.at(place);
            if (flag < 2) return Sorted(all, values(place, all), descending);
            std::map<Tuple, Cell> known;
            return SiblingsSorted(cube_, all, descending, [&](const Tuple& tuple) {
              const auto found = known.find(tuple);
              if (found != known.end()) return found->second;
              return known[tuple] = value.at(Moved(place, tuple));
            });
          }};
}

}  // namespace vok::plain
