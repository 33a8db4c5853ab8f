#include "tests/support/plain_olap/random_mdx.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace vok::plain {
namespace {

constexpr int kDepth = 3;

std::string Shown(const Cell& cell) {
  if (!cell) return "-";
  char buffer[40];
  return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, *cell).ptr);
}

std::string Shown(const std::vector<Tuples>& axes, const std::vector<Cell>& cells) {
  std::string text;
  for (std::size_t axis = 0; axis < axes.size(); ++axis) {
    text += "axis " + std::to_string(axis) + "\n";
    for (const Tuple& tuple : axes[axis]) {
      for (const Member* member : tuple) {
        text += (member == tuple.front() ? "" : " | ") + member->unique_name;
      }
      text += "\n";
    }
  }
  text += "cells\n";
  for (std::size_t i = 0; i < cells.size(); ++i) {
    text += Shown(cells[i]) + ((i + 1) % axes[0].size() == 0 ? "\n" : " | ");
  }
  return text;
}

/// The positions of a cell: the first axis runs fastest.
std::vector<std::size_t> PositionsOf(std::size_t cell, const std::vector<Tuples>& axes) {
  std::vector<std::size_t> positions;
  for (const Tuples& axis : axes) {
    positions.push_back(cell % axis.size());
    cell /= axis.size();
  }
  return positions;
}

}  // namespace

RandomMdx::RandomMdx(const Cube& cube, std::string cube_name, uint64_t seed, bool tame)
    : cube_(cube), cube_name_(std::move(cube_name)), dice_(seed), tame_(tame) {}

/// Some hierarchies stand in WHERE, at one member or at several taken together.
void RandomMdx::ChooseSlicer() {
  base_ = cube_.DefaultPlace();
  where_.clear();
  free_.clear();
  const auto add = [this](const std::string& text) {
    where_ += (where_.empty() ? " WHERE " : " * ") + text;
  };
  for (std::size_t h = 1; h < cube_.hierarchies.size(); ++h) {
    if (h == 1 || !dice_.OneIn(3)) {
      free_.push_back(h);
      continue;
    }
    const Member& member = Stored(h);
    const Member& other = Stored(h);
    base_.Set(member);
    const bool several = !tame_ && dice_.OneIn(3) && &member != &other;
    add("{" + member.unique_name + (several ? ", " + other.unique_name : "") + "}");
    if (!several) continue;
    base_.Set(cube_.DefaultMember(h));
    base_.together[h] = {&member, &other};
  }
  for (std::size_t i = free_.size(); i > 1; --i) {
    std::swap(free_[i - 1], free_[static_cast<std::size_t>(dice_.Below(static_cast<int>(i)))]);
  }
}

void RandomMdx::AddNamedSet() {
  named_of_.clear();
  if (!dice_.OneIn(3)) return;
  const Hierarchies of(free_.begin(),
                       free_.begin() + (!tame_ && dice_.OneIn(3) && free_.size() > 1 ? 2 : 1));
  const SetTerm set = Set(of, kDepth - 1);
  with_ += " SET [some] AS " + set.text;
  named_ = set.at(base_);
  named_of_ = of;
}

Member& RandomMdx::NewCalculated(std::size_t hierarchy, const std::string& name,
                                 NumberTerm formula) {
  Member& member = calculated_.emplace_back();
  member.name = name;
  member.unique_name = cube_.hierarchies[hierarchy].name + ".[" + name + "]";
  member.hierarchy = hierarchy;
  member.formula = std::move(formula.at);
  with_ += " MEMBER " + member.unique_name + " AS " + formula.text;
  return member;
}

void RandomMdx::AddCalculatedMembers() {
  calculated_.clear();
  const int count = 1 + dice_.Below(2);
  for (int i = 0; i < count; ++i) {
    NewCalculated(0, "x" + std::to_string(i), Number(kDepth)).solve_order = i;
    with_ += ", SOLVE_ORDER = " + std::to_string(i);
  }
}

SetTerm RandomMdx::Axis(const Hierarchies& hierarchies) {
  SetTerm set = Set(hierarchies, kDepth);
  const bool has_total = !calculated_.empty() && calculated_.back().hierarchy != 0;
  if (hierarchies.size() > 1 || has_total || !dice_.OneIn(4)) return set;
  const Member& total = NewCalculated(hierarchies[0], "total", Number(kDepth - 1));
  calculated_.back().solve_order = 9;
  with_ += ", SOLVE_ORDER = 9";
  return {"{" + set.text + ", " + total.unique_name + "}",
          [set, &total](const Place& place) { return Together(set.at(place), {{&total}}); }};
}

std::vector<Cell> RandomMdx::Cells(const std::vector<Tuples>& axes) const {
  std::size_t count = 1;
  for (const Tuples& axis : axes) count *= axis.size();
  std::vector<Cell> cells;
  for (std::size_t i = 0; i < count; ++i) {
    const std::vector<std::size_t> positions = PositionsOf(i, axes);
    Place place = base_;
    for (std::size_t axis = 0; axis < axes.size(); ++axis) {
      for (const Member* member : axes[axis][positions[axis]]) place.Set(*member);
    }
    cells.push_back(cube_.CellAt(place));
  }
  return cells;
}

std::vector<Tuples> RandomMdx::WithoutEmpty(std::vector<Tuples> axes,
                                            const std::vector<bool>& wanted) {
  const std::vector<Cell> cells = Cells(axes);
  std::vector<Tuples> kept = axes;
  for (std::size_t axis = 0; axis < axes.size(); ++axis) {
    if (!wanted[axis]) continue;
    kept[axis].clear();
    for (std::size_t position = 0; position < axes[axis].size(); ++position) {
      bool has_cell = false;
      for (std::size_t i = 0; i < cells.size(); ++i) {
        if (cells[i] && PositionsOf(i, axes)[axis] == position) has_cell = true;
      }
      if (has_cell) kept[axis].push_back(axes[axis][position]);
    }
  }
  return kept;
}

RandomQuery RandomMdx::Next() {
  with_ = "WITH";
  calculated_.clear();
  ChooseSlicer();
  AddNamedSet();
  AddCalculatedMembers();
  SetTerm measures = {"{[Measures].[Amount], [Measures].[Who], [Measures].[Least]", {}};
  Tuples columns;
  for (const std::size_t i : {0, 6, 4})
    columns.push_back({cube_.hierarchies[0].levels[0].members[i]});
  for (const Member& member : calculated_) {
    measures.text += ", " + member.unique_name;
    columns.push_back({&member});
  }
  std::string select = measures.text + "} ON 0";
  std::vector<Tuples> axes = {columns};
  std::vector<bool> non_empty = {dice_.OneIn(4)};
  if (non_empty[0]) select = "NON EMPTY " + select;
  const std::size_t rows = !tame_ && dice_.OneIn(2) && free_.size() > 1 ? 2 : 1;
  std::vector<Hierarchies> rest = {
      Hierarchies(free_.begin(), free_.begin() + static_cast<int>(rows))};
  if (free_.size() > rows && dice_.OneIn(3)) rest.push_back({free_[rows]});
  for (const Hierarchies& hierarchies : rest) {
    const SetTerm set = Axis(hierarchies);
    non_empty.push_back(!tame_ && dice_.OneIn(2));
    select += (non_empty.back() ? ", NON EMPTY " : ", ") + set.text + " ON " +
              std::to_string(axes.size());
    axes.push_back(set.at(base_));
  }
  axes = WithoutEmpty(axes, non_empty);
  return {with_ + " SELECT " + select + " FROM [" + cube_name_ + "]" + where_,
          Shown(axes, Cells(axes))};
}

}  // namespace vok::plain
