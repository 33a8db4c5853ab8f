// Random numbers and conditions.
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "tests/support/plain_olap/random_mdx.h"

namespace vok::plain {
namespace {

std::vector<Cell> Values(const Place& place, const Tuples& tuples, const NumberTerm& value) {
  std::vector<Cell> values;
  for (const Tuple& tuple : tuples) {
    Place inner = place;
    for (const Member* member : tuple) inner.Set(*member);
    values.push_back(value.at(inner));
  }
  return values;
}

/// "Sum", "Avg", "Min" or "Max" of those that are there.
Cell Fold(const std::string& name, const std::vector<Cell>& values) {
  Cell result;
  double count = 0;
  for (const Cell& value : values) {
    if (!value) continue;
    ++count;
    const double so_far = result.value_or(*value);
    if (name == "Min") {
      result = *value < so_far ? *value : so_far;
    } else if (name == "Max") {
      result = *value > so_far ? *value : so_far;
    } else {
      result = result.value_or(0) + *value;
    }
  }
  if (name == "Avg" && result) result = *result / count;
  return result;
}

bool Compares(const std::string& by, int order) {
  if (by == "<>") return order != 0;
  if (order == 0) return by.find('=') != std::string::npos;
  return by[0] == (order < 0 ? '<' : '>');
}

const std::vector<std::string> kComparisons = {"=", "<>", "<", "<=", ">", ">="};

}  // namespace

NumberTerm RandomMdx::Literal(int limit) {
  const int number = dice_.Below(limit);
  return {std::to_string(number), [number](const Place&) -> Cell { return number; }};
}

NumberTerm RandomMdx::Number(int depth) {
  switch (depth > 0 ? dice_.Below(7) : 0) {
    case 0:
    case 1:
      return CellOf(depth - 1);
    case 2:
    case 3:
      return Computed(depth - 1);
    case 4:
      return Chosen(depth - 1);
    case 5:
      return !tame_ && dice_.OneIn(3) ? Aggregate(depth - 1) : Folded(depth - 1);
    default:
      return Counted(depth - 1);
  }
}

/// A measure, perhaps one calculated before; a member; or a tuple.
NumberTerm RandomMdx::CellOf(int depth) {
  const Member* measure = dice_.OneOf(cube_.hierarchies[0].levels[0].members);
  if (!calculated_.empty() && dice_.OneIn(4)) measure = &dice_.OneOf(calculated_);
  const MemberTerm member = AMember(AnyHierarchy(), depth);
  const int kind = dice_.Below(depth > 0 ? 4 : 2);
  if (kind < 2) {
    return {measure->unique_name, [this, measure](const Place& place) {
              Place inner = place;
              inner.Set(*measure);
              return cube_.CellAt(inner);
            }};
  }
  const bool with_measure = kind == 3;
  const std::string text =
      with_measure ? "(" + member.text + ", " + measure->unique_name + ")" : member.text;
  return {text, [this, member, measure, with_measure](const Place& place) -> Cell {
            const Member* to = member.at(place);
            if (to == nullptr) return {};
            Place inner = place;
            inner.Set(*to);
            if (with_measure) inner.Set(*measure);
            return cube_.CellAt(inner);
          }};
}

NumberTerm RandomMdx::Computed(int depth) {
  const NumberTerm a = Number(depth);
  const NumberTerm b = dice_.OneIn(2) ? Literal(9) : Number(depth);
  const auto computed = [&](const std::string& text, auto compute) {
    return NumberTerm{
        text, [a, b, compute](const Place& place) { return compute(a.at(place), b.at(place)); }};
  };
  const auto sum = [](int sign) {
    return [sign](const Cell& x, const Cell& y) -> Cell {
      if (!x && !y) return {};
      return x.value_or(0) + sign * y.value_or(0);
    };
  };
  const auto of_one = [](auto compute) {
    return [compute](const Cell& x, const Cell&) -> Cell {
      if (!x) return {};
      return compute(*x);
    };
  };
  switch (dice_.Below(tame_ ? 6 : 9)) {
    case 0:
      return computed("(" + a.text + " + " + b.text + ")", sum(1));
    case 1:
      return computed("(" + a.text + " - " + b.text + ")", sum(-1));
    case 2:
      return computed("(" + a.text + " * " + b.text + ")",
                      [](const Cell& x, const Cell& y) -> Cell {
                        if (!x || !y) return {};
                        return *x * *y;
                      });
    case 3:
      return computed("(" + a.text + " / 4)", of_one([](double x) { return x / 4; }));
    case 4:
      return computed("-(" + a.text + ")", of_one([](double x) { return -x; }));
    case 5:
      return computed("(" + a.text + " + 1)",
                      [](const Cell& x, const Cell&) -> Cell { return x.value_or(0) + 1; });
    case 6:
      return computed("Abs(" + a.text + ")", of_one([](double x) { return std::fabs(x); }));
    case 7:
      return computed("Round(" + a.text + ", 1)",
                      of_one([](double x) { return std::floor(x * 10 + 0.5) / 10; }));
    default:
      return computed("CoalesceEmpty(" + a.text + ", " + b.text + ")",
                      [](const Cell& x, const Cell& y) { return x ? x : y; });
  }
}

NumberTerm RandomMdx::Chosen(int depth) {
  const ConditionTerm condition = Condition(depth);
  const NumberTerm yes = Number(depth);
  const NumberTerm no = Number(depth);
  const auto choice = [condition, yes, no](const Place& place) {
    return condition.at(place) ? yes.at(place) : no.at(place);
  };
  // Of two members IIf and CASE would choose a member.
  const auto filled = [choice](const Place& place) -> Cell {
    return choice(place).value_or(0) + 0;
  };
  const std::string numbers = "(" + yes.text + " + 0), (" + no.text + " + 0)";
  switch (dice_.Below(tame_ ? 2 : 4)) {
    case 0:
      return {"IIf(" + condition.text + ", " + numbers + ")", filled};
    case 1:
      return {"CASE WHEN " + condition.text + " THEN (" + yes.text + " + 0) ELSE (" + no.text +
                  " + 0) END",
              filled};
    case 2:
      return {"CASE WHEN " + condition.text + " THEN " + yes.text + " END",
              [condition, yes](const Place& place) {
                return condition.at(place) ? yes.at(place) : Cell();
              }};
    default: {
      const NumberTerm of = Number(depth);
      const NumberTerm when = dice_.OneIn(2) ? Literal(4) : Number(depth);
      // Of two members CASE would ask whether they are the same.
      return {"CASE -(" + of.text + ") WHEN -(" + when.text + ") THEN " + yes.text + " ELSE " +
                  no.text + " END",
              [of, when, yes, no](const Place& place) {
                const Cell x = of.at(place);
                const Cell y = when.at(place);
                return x && y && *x == *y ? yes.at(place) : no.at(place);
              }};
    }
  }
}

NumberTerm RandomMdx::Folded(int depth) {
  static const Words kNames = {"Sum", "Sum", "Avg", "Min", "Max"};
  const std::string name = dice_.OneOf(kNames);
  const SetTerm set = Set(AnyHierarchies(), depth);
  const bool has_value = !dice_.OneIn(4);
  const NumberTerm cell = {"", [this](const Place& place) { return cube_.CellAt(place); }};
  const bool may_be_any = !tame_ || name == "Sum";
  const NumberTerm value = has_value ? may_be_any ? Number(depth) : CellOf(0) : cell;
  return {name + "(" + set.text + (has_value ? ", " + value.text : "") + ")",
          [name, set, value](const Place& place) {
            return Fold(name, Values(place, set.at(place), value));
          }};
}

NumberTerm RandomMdx::Aggregate(int depth) {
  const Hierarchies of = AnyHierarchies();
  SetTerm set = Set({of[0]}, depth);
  if (of.size() > 1) set = CrossedSets(set, Set({of[1]}, depth));
  const Member* measure = dice_.OneOf(cube_.hierarchies[0].levels[0].members);
  return {"Aggregate(" + set.text + ", " + measure->unique_name + ")",
          [this, set, measure](const Place& place) {
            Place inner = place;
            inner.Set(*measure);
            const Tuples tuples = set.at(place);
            const Measure kind = measure->measure;
            if (kind == Measure::kWho) return cube_.TakenTogether(inner, tuples);
            const NumberTerm cell = {"", [this](const Place& at) { return cube_.CellAt(at); }};
            const bool least = kind == Measure::kLeast;
            const bool most = kind == Measure::kMost;
            return Fold(least ? "Min" : most ? "Max" : "Sum", Values(inner, tuples, cell));
          }};
}

NumberTerm RandomMdx::Counted(int depth) {
  const SetTerm set = Set(AnyHierarchies(), depth);
  const auto all = [set](const Place& place) -> Cell {
    return static_cast<double>(set.at(place).size());
  };
  switch (dice_.Below(tame_ ? 2 : 3)) {
    case 0:
      return {"Count(" + set.text + ")", all};
    case 1:
      return {"{" + set.text + "}.Count", all};
    default:
      return {"Count(" + set.text + ", EXCLUDEEMPTY)", [this, set](const Place& place) -> Cell {
                const NumberTerm cell = {"", [this](const Place& at) { return cube_.CellAt(at); }};
                double count = 0;
                for (const Cell& value : Values(place, set.at(place), cell)) count += !!value;
                return count;
              }};
  }
}

ConditionTerm RandomMdx::Comparison(int depth) {
  const std::string by = dice_.OneOf(kComparisons);
  const NumberTerm a = Number(depth);
  const NumberTerm b = dice_.OneIn(2) ? Literal(30) : Number(depth);
  return {"(" + a.text + " " + by + " " + b.text + ")", [a, b, by](const Place& place) {
            const Cell x = a.at(place);
            const Cell y = b.at(place);
            return x && y && Compares(by, *x < *y ? -1 : *y < *x ? 1 : 0);
          }};
}

ConditionTerm RandomMdx::Condition(int depth) {
  const std::size_t hierarchy = AnyHierarchy();
  const MemberTerm member = AMember(hierarchy, depth);
  const MemberTerm other = AMember(hierarchy, 0);
  const NumberTerm number = Number(depth);
  const std::string by = dice_.OneOf(kComparisons);
  const int kind = dice_.Below(depth > 0 ? 7 : 5);
  if (kind < 2) return Comparison(depth);
  if (kind == 2) {
    return {"IsEmpty(" + number.text + ")",
            [number](const Place& place) { return !number.at(place); }};
  }
  if (kind == 3) {
    return {"(" + member.text + " IS " + other.text + ")",
            [member, other](const Place& place) { return member.at(place) == other.at(place); }};
  }
  if (kind == 4) {
    const std::string name = Stored(hierarchy).name;
    if (member.text == cube_.hierarchies[hierarchy].name) return Comparison(depth);
    return {"(" + member.text + ".Name " + by + " \"" + name + "\")",
            [member, name, by](const Place& place) {
              const Member* of = member.at(place);
              return Compares(by, (of == nullptr ? "#null" : of->name).compare(name));
            }};
  }
  const ConditionTerm a = Condition(depth - 1);
  if (kind == 5) {
    return {"NOT " + a.text, [a](const Place& place) { return !a.at(place); }};
  }
  const ConditionTerm b = Condition(depth - 1);
  static const Words kWords = {" AND ", " OR ", " XOR "};
  const std::string word = dice_.OneOf(kWords);
  return {"(" + a.text + word + b.text + ")", [a, b, word](const Place& place) {
            const int count = int{a.at(place)} + int{b.at(place)};
            return word == " OR " ? count > 0 : count == (word == " AND " ? 2 : 1);
          }};
}

}  // namespace vok::plain
