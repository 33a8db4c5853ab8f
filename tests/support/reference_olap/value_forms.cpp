// Numbers and conditions.
#include <cmath>
#include <utility>

#include "tests/support/reference_olap/forms.h"

namespace vok::plain {
namespace {

Cell CellOf(const Call& call, const Tuples& tuples) {
  return tuples.empty() ? Cell() : call.cube.CellAt(call.place.At(tuples[0]));
}

Cell CellOfFirst(const Call& call) { return CellOf(call, call.Set(0)); }

std::vector<Cell> ValuesOf(const Tuples& tuples, const ValueAt& value) {
  std::vector<Cell> values;
  for (const Tuple& tuple : tuples) values.push_back(value(tuple));
  return values;
}

ValueAt CellsOf(const Call& call) {
  return [&call](const Tuple& tuple) { return CellOf(call, {tuple}); };
}

Cell Computed(const Call& call) {
  const Cell a = call.Number(0);
  const Cell b = call.Number(2);
  const std::string& word = call.Word(1);
  if (word == "*" ? !a || !b : !a && !b) return {};
  const double x = a.value_or(0);
  const double y = b.value_or(0);
  return word == "*" ? x * y : word == "-" ? x - y : x + y;
}

template <double (*kCompute)(double)>
Cell OfOne(const Call& call) {
  const Cell number = call.Number(0);
  return number ? Cell(kCompute(*number)) : number;
}

Cell Chosen(const Call& call) { return call.Number(call.Holds(0) ? 1 : 2).value_or(0) + 0; }

Cell FoldedSet(const Call& call) {
  const ValueAt value = call.parts.size() > 2 ? call.Values(2) : CellsOf(call);
  return Folded(call.Word(0), ValuesOf(call.Set(1), value));
}

/// Both values are computed, also where the first decides.
Cell ChosenByEquality(const Call& call) {
  const Cell a = call.Number(0);
  const Cell b = call.Number(1);
  return call.Number(a && a == b ? 2 : 3);
}

Cell FirstThere(const Call& call) {
  const Cell b = call.Number(1);
  const Cell a = call.Number(0);
  return a ? a : b;
}

Cell Aggregated(const Call& call, const Tuples& tuples, const Member& measure) {
  const std::string_view how = measure.measure ? measure.measure->aggregator : "sum";
  const Place place = call.place.At({&measure});
  if (how == "distinct-count") return call.cube.TakenTogether(place, tuples);
  const auto cell = [&](const Tuple& tuple) { return call.cube.CellAt(place.At(tuple)); };
  return Folded(how == "count" ? "sum" : how, ValuesOf(tuples, cell));
}

Cell Size(const Call& call) { return call.Set(0).size(); }

bool Compares(const std::string& by, int order) {
  if (by == "<>") return order != 0;
  return order == 0 ? by.find('=') != by.npos : by[0] == (order < 0 ? '<' : '>');
}

/// Nothing compares with an empty value.
Cell Comparison(const Call& call) {
  const Cell a = call.Number(0);
  const Cell b = call.Number(2);
  return a && b && Compares(call.Word(1), *a < *b ? -1 : *b < *a);
}

Cell NameComparison(const Call& call) {
  const auto name = [&](const Member* member) { return member ? member->name : "#null"; };
  return Compares(call.Word(1), name(call.One(0)).compare(name(call.One(2))));
}

Cell Logic(const Call& call) {
  const int count = call.Holds(0) + call.Holds(2);
  return call.Word(1) == "OR" ? count > 0 : count == (call.Word(1) == "AND" ? 2 : 1);
}

}  // namespace

Term Constant(std::string text, const Result& result) {
  return {std::move(text), [result](const Place&) { return result; }};
}

bool Form::HasPart(std::string_view letters) const {
  for (std::size_t part = text.find('%'); part != text.npos; part = text.find('%', part + 1)) {
    if (letters.find(text[part + 1]) != letters.npos) return true;
  }
  return false;
}

const Forms kNumberForms = {
    {{"%M", CellOfFirst},
     {"(%m, %M)", [](const Call& c) { return CellOf(c, Pairs(c.Set(0), c.Set(1))); }},
     {"(%v %(+|-|*) %v)", Computed},
     {"(%v %(+|-|*) %i)", Computed},
     {"(%v / 4)", OfOne<[](double x) { return x / 4; }>},
     {"-(%v)", OfOne<[](double x) { return -x; }>},
     // Of two members these would choose a member, and CASE ask whether they are the same.
     {"IIf(%c, (%v + 0), (%v + 0))", Chosen},
     {"CASE WHEN %c THEN (%v + 0) ELSE (%v + 0) END", Chosen},
     {"%(sum|avg|min|max)(%s)", FoldedSet},
     {"%(sum)(%s, %v)", FoldedSet},
     {"Count(%s)", Size},
     {"{%s}.Count", Size}},
    {{"%m", CellOfFirst},  // where a value is wanted, servers differ about a member
     {"%(sum|avg|min|max)(%s, %v)", FoldedSet},
     {"CASE WHEN %c THEN %v END", [](const Call& c) { return c.Holds(0) ? c.Number(1) : Cell(); }},
     {"CASE -(%v) WHEN -(%v) THEN %v ELSE %v END", ChosenByEquality},
     {"Abs(%v)", OfOne<[](double x) { return std::fabs(x); }>},
     {"Round(%v, 1)", OfOne<[](double x) { return std::floor(x * 10 + 0.5) / 10; }>},
     {"CoalesceEmpty(%v, %v)", FirstThere},
     {"Aggregate(%1, %M)", [](const Call& c) { return Aggregated(c, c.Set(0), *c.One(1)); }},
     {"Aggregate({%1} * {%2}, %M)",
      [](const Call& c) { return Aggregated(c, Pairs(c.Set(0), c.Set(1)), *c.One(2)); }},
     {"Count(%s, EXCLUDEEMPTY)", [](const Call& c) {
        return Cell(Folded("count", ValuesOf(c.Set(0), CellsOf(c))).value_or(0));
      }}}};

const Forms kConditionForms = {
    {{"(%v %(=|<>|<|<=|>|>=) %v)", Comparison},
     {"(%v %(=|<>|<|<=|>|>=) %i)", Comparison},
     {"IsEmpty(%v)", [](const Call& c) { return Cell(!c.Number(0)); }},
     {"(%m IS %m)", [](const Call& c) { return Cell(c.One(0) == c.One(1)); }},
     {"(%m.Name = \"#null\")", [](const Call& c) { return Cell(c.One(0) == nullptr); }},
     {"(%m.Name %(=|<>|<|<=|>|>=) %m.Name)", NameComparison},
     {"NOT %c", [](const Call& c) { return Cell(!c.Holds(0)); }},
     {"(%c %(AND|OR|XOR) %c)", Logic}},
    {}};

}  // namespace vok::plain
