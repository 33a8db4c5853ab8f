#include <algorithm>
#include <sstream>
#include <utility>

#include "tests/support/reference_olap/forms.h"
#include "tests/support/reference_olap/random_cube.h"

namespace vok::plain {
namespace {

constexpr int kDepth = 3;

using Hierarchies = std::vector<std::size_t>;
using Axes = std::vector<Tuples>;

/// A calculated member stands on the first level.
std::string Written(const Cube& cube, const Axes& axes, const std::vector<Cell>& cells) {
  std::string text;
  for (std::size_t axis = 0; axis < axes.size(); ++axis) {
    text += "axis " + std::to_string(axis) + "\n";
    for (const Tuple& tuple : axes[axis]) {
      for (const Member* member : tuple) {
        text += member->unique_name + " \"" + member->name + "\" " +
                cube.hierarchies[member->hierarchy].levels[member->level].name +
                (member == tuple.back() ? "\n" : " | ");
      }
    }
  }
  text += "cells\n";
  for (std::size_t i = 0; i < cells.size(); ++i) {
    text += cells[i] ? Shown(*cells[i] + 0.0) : "-";
    text += (i + 1) % axes[0].size() == 0 ? "\n" : " | ";
  }
  return text;
}

/// The first axis runs fastest.
std::vector<Cell> CellsOf(const Cube& cube, const Place& place, Axes axes) {
  if (axes.empty()) return {cube.CellAt(place)};
  const Tuples slowest = axes.back();
  axes.pop_back();
  std::vector<Cell> cells;
  for (const Tuple& tuple : slowest) {
    const std::vector<Cell> part = CellsOf(cube, place.At(tuple), axes);
    cells.insert(cells.end(), part.begin(), part.end());
  }
  return cells;
}

Tuples NonEmpty(const Cube& cube, const Place& place, Axes axes, std::size_t axis) {
  Tuples kept;
  for (const Tuple& tuple : Tuples(axes[axis])) {
    axes[axis] = {tuple};
    const std::vector<Cell> cells = CellsOf(cube, place, axes);
    if (std::any_of(cells.begin(), cells.end(), [](const Cell& cell) { return !!cell; })) {
      kept.push_back(tuple);
    }
  }
  return kept;
}

Term Named(const Member& member) { return Constant(member.unique_name, &member); }

Term Number(int number) { return Constant(std::to_string(number), Cell(number)); }

class QueryMaker {
 public:
  QueryMaker(const Cube& cube, Dice& dice, bool tame) : cube_(cube), dice_(dice), tame_(tame) {}

  RandomQuery Make(const std::string& cube_name) {
    ChooseSlicer();
    if (dice_.OneIn(3)) AddNamedSet();
    const Members& measures = cube_.hierarchies[0].levels[0].members;
    Axes axes = {Singles({measures[0], measures[1], measures[2]})};
    std::string select = "{Head([Measures].Members, 3)";
    for (int i = 0; i <= dice_.Below(2); ++i) {
      axes[0].push_back({&NewCalculated(0, "x" + std::to_string(i), i, kDepth)});
      select += ", " + axes[0].back()[0]->unique_name;
    }
    select += "} ON 0";
    std::vector<bool> non_empty = {dice_.OneIn(4)};
    std::vector<Term> sets;
    if (non_empty[0]) select = "NON EMPTY " + select;
    for (const Hierarchies& hierarchies : Rows()) {
      const Term set = Axis(hierarchies);
      non_empty.push_back(!tame_ && dice_.OneIn(2));
      select += (non_empty.back() ? ", NON EMPTY " : ", ") + set.text + " ON " +
                std::to_string(axes.size());
      axes.emplace_back();
      sets.push_back(set);
    }
    return {with_ + " SELECT " + select + " FROM [" + cube_name + "]" + where_,
            Answer(axes, sets, non_empty)};
  }

 private:
  std::string Answer(Axes axes, const std::vector<Term>& sets,
                     const std::vector<bool>& non_empty) const try {
    for (std::size_t i = 0; i < sets.size(); ++i) axes[i + 1] = sets[i].at(base_).tuples;
    Axes kept = axes;
    for (std::size_t axis = 0; axis < axes.size(); ++axis) {
      if (non_empty[axis]) kept[axis] = NonEmpty(cube_, base_, axes, axis);
    }
    return Written(cube_, kept, CellsOf(cube_, base_, kept));
  } catch (const UnknownMember&) {
    return kUnknownMember;
  }

  /// Some hierarchies stand in WHERE, at one member or at two taken together.
  void ChooseSlicer() {
    for (std::size_t h = 1; h < cube_.hierarchies.size(); ++h) {
      if (h == 1 || !dice_.OneIn(3)) {
        free_.push_back(h);
        continue;
      }
      const Member& member = Stored(h);
      const Member& other = Stored(h);
      const bool several = !tame_ && dice_.OneIn(3) && &member != &other;
      if (several) anywhere_.push_back(h);
      base_.at[h] = several ? Members{&member, &other} : Members{&member};
      where_ += (where_.empty() ? " WHERE {" : " * {") + member.unique_name +
                (several ? ", " + other.unique_name : "") + "}";
    }
    dice_.Shuffle(free_);
    anywhere_.insert(anywhere_.end(), free_.begin(), free_.end());
  }

  void AddNamedSet() {
    const Hierarchies of = AnyHierarchies();
    const Term set = Made('s', of, kDepth - 1);
    with_ += " SET [some] AS " + set.text;
    named_ = set;
    named_of_ = of;
  }

  const Member& NewCalculated(std::size_t hierarchy, const std::string& name, int solve_order,
                              int depth) {
    const Term formula = Made('v', {}, depth);
    Member& member = calculated_.emplace_back();
    member.name = name;
    member.unique_name = cube_.hierarchies[hierarchy].name + ".[" + name + "]";
    member.hierarchy = hierarchy;
    member.formula = [formula](const Place& place) { return formula.at(place).number; };
    member.solve_order = solve_order;
    with_ += " MEMBER " + member.unique_name + " AS " + formula.text +
             ", SOLVE_ORDER = " + std::to_string(solve_order);
    return member;
  }

  /// The hierarchies of the axes after the first.
  std::vector<Hierarchies> Rows() {
    const std::size_t pair = !tame_ && dice_.OneIn(2) && free_.size() > 1 ? 2 : 1;
    std::vector<Hierarchies> rows = {{free_[0]}};
    if (pair == 2) rows[0].push_back(free_[1]);
    if (free_.size() > pair && dice_.OneIn(3)) rows.push_back({free_[pair]});
    return rows;
  }

  Term Axis(const Hierarchies& hierarchies) {
    Term set = Made('s', hierarchies, kDepth);
    const bool has_total = calculated_.back().hierarchy != 0;
    if (hierarchies.size() > 1 || has_total || !dice_.OneIn(4)) return set;
    const Member& total = NewCalculated(hierarchies[0], "total", 9, kDepth - 1);
    return {"{" + set.text + ", " + total.unique_name + "}", [set, &total](const Place& place) {
              Tuples tuples = set.at(place).tuples;
              tuples.push_back({&total});
              return tuples;
            }};
  }

  /// 'm', 's', 'v' or 'c', as in the texts of forms; members and sets of the hierarchies.
  Term Made(char kind, const Hierarchies& of_set, int depth) {
    if (kind == 's' && named_of_ == of_set && dice_.OneIn(6)) {
      return {"[some]", [this](const Place&) { return named_.at(base_); }};
    }
    const Hierarchies of = kind == 'v' ? AnyHierarchies() : of_set;
    const Form& form = Chosen(kind, of, dice_.OneIn(4) ? 0 : depth);
    std::string text;
    std::vector<Term> parts;
    for (std::size_t i = 0; i < form.text.size(); ++i) {
      if (form.text[i] != '%') {
        text += form.text[i];
        continue;
      }
      const std::size_t begin = i + 1;
      i = form.text[begin] == '(' ? form.text.find(')', begin) : begin;
      parts.push_back(i == begin ? Part(form.text[i], of, depth - 1, parts)
                                 : Word(form.text.substr(begin + 1, i - begin - 1)));
      text += parts.back().text;
    }
    return {text, [this, &form, parts](const Place& place) {
              return form.at({cube_, place, parts});
            }};
  }

  const Form& Chosen(char kind, const Hierarchies& of, int depth) {
    const Forms& forms = kind == 'm'   ? kMemberForms
                         : kind == 's' ? kSetForms
                         : kind == 'v' ? kNumberForms
                                       : kConditionForms;
    std::vector<const Form*> fitting;
    const auto add = [&](const Form& form) {
      const bool goes_deeper = form.HasPart(kind == 'm' ? "m" : "svc12");
      const bool is_of_pairs = form.HasPart("w2");
      const bool is_of_one = !is_of_pairs && form.HasPart("m1dhl");
      if (goes_deeper && depth <= 0) return;
      if (of.size() == 1 ? is_of_pairs : is_of_one) return;
      if (of[0] == 1 || !form.HasPart("P")) fitting.push_back(&form);
    };
    for (const Form& form : forms.tame) add(form);
    for (std::size_t i = 0; !tame_ && i < forms.wild.size(); ++i) add(forms.wild[i]);
    return *dice_.OneOf(fitting);
  }

  Term Word(std::string_view alternatives) {
    std::istringstream all{std::string(alternatives)};
    std::vector<std::string> words;
    for (std::string word; std::getline(all, word, '|');) words.push_back(word);
    return Constant(dice_.OneOf(words), Cell());
  }

  Term Part(char letter, const Hierarchies& of, int depth, const std::vector<Term>& before) {
    const Hierarchy& hierarchy = cube_.hierarchies[of[0]];
    const Level& level = dice_.OneOf(hierarchy.levels);
    const auto number = static_cast<double>(&level - hierarchy.levels.data());
    switch (letter) {
      case 'm':
        return Made('m', {of[0]}, depth);
      case 'w':
        return Made('m', {of[1]}, depth);
      case '1':
        return Made('s', {of[0]}, depth);
      case '2':
        return Made('s', {of[1]}, depth);
      case 'c':
        return Made('c', {dice_.OneOf(free_)}, depth);
      case 'd':
        return Named(Stored(of[0]));
      case 'e': {
        const Member& member = *before.back().at(base_).tuples[0][0];
        return Named(*dice_.OneOf(hierarchy.levels[member.level].members));
      }
      case 'h':
        return {hierarchy.name, [h = of[0]](const Place& place) { return Singles(place.at[h]); }};
      case 'l':
        return Constant(level.name, {Singles(level.members), number});
      case 'P':
        if (level.kind == "Regular") return Part(letter, of, depth, before);
        return Constant(level.kind.substr(4, 1) + "td", Cell(number));
      case 'M': {
        const Member& stored = Stored(0);
        if (calculated_.empty() || !dice_.OneIn(4)) return Named(stored);
        const Member& calculated = dice_.OneOf(calculated_);
        return Named(calculated.hierarchy == 0 ? calculated : stored);
      }
      case 'n':
        return Number(dice_.Below(6) + (tame_ ? 1 : -2));
      case 'k':
        return Number(dice_.Below(4) + (tame_ ? 1 : 0));
      case 'i':
        return Number(dice_.Below(20));
      default:
        return Made(letter, of, depth);
    }
  }

  const Member& Stored(std::size_t hierarchy) {
    return *dice_.OneOf(dice_.OneOf(cube_.hierarchies[hierarchy].levels).members);
  }

  /// One, or a pair of them.
  Hierarchies AnyHierarchies() {
    const Hierarchies any = {dice_.OneOf(anywhere_), dice_.OneOf(anywhere_)};
    return tame_ || any[0] == any[1] || !dice_.OneIn(3) ? Hierarchies{any[0]} : any;
  }

  const Cube& cube_;
  Dice& dice_;
  bool tame_;
  std::deque<Member> calculated_;
  Place base_ = cube_.DefaultPlace();
  std::string with_ = "WITH";
  std::string where_;
  Hierarchies free_;      ///< all but the measures and those of the slicer
  Hierarchies anywhere_;  ///< those and where the slicer has several members
  Hierarchies named_of_;  ///< the hierarchies of the named set, when there is one
  Term named_;
};

}  // namespace

std::vector<RandomQuery> RandomQueries(const Cube& cube, const std::string& cube_name,
                                       uint64_t seed, bool tame, int count) {
  Dice dice(seed);
  std::vector<RandomQuery> queries;
  while (count-- > 0) queries.push_back(QueryMaker(cube, dice, tame).Make(cube_name));
  return queries;
}

}  // namespace vok::plain
