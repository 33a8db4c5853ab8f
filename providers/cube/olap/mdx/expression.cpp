#include "providers/cube/olap/mdx/expression.h"

#include <utility>

#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/merged_cells.h"

namespace vok::olap {
namespace {

bool AreAllOf(IdRange members, const MemberIds& ids) {
  if (ids.size() != members.size()) return false;
  for (uint32_t i = 0; i < ids.size(); ++i) {
    if (ids[i] != members.begin + i) return false;
  }
  return true;
}

}  // namespace

Positions::Positions(const CubeView& cube, HierarchyId hierarchy_id, MemberIds members)
    : hierarchy(hierarchy_id), ids(std::move(members)) {
  const bool begins = !ids.empty() && ids[0] != kNoMember;
  const uint32_t level = begins ? cube.LevelOf(hierarchy, ids[0]) : 0;
  if (AreAllOf(cube.LevelMembers(hierarchy, level), ids)) {
    AddLevel(level);
  } else {
    AddByLevel(cube);
  }
}

void Positions::AddByLevel(const CubeView& cube) {
  const Hierarchy& stored = cube.Stored(hierarchy);
  std::vector<Part> by_level(cube.LevelCount(hierarchy));
  for (uint32_t row = 0; row < ids.size(); ++row) {
    if (ids[row] == kNoMember) continue;
    Part& part = by_level[cube.LevelOf(hierarchy, ids[row])];
    part.rows.push_back(row);
    Append(stored.Leaves(ids[row]), part.leaves);
  }
  for (uint32_t level = 0; level < by_level.size(); ++level) {
    Part& part = by_level[level];
    if (part.rows.empty()) continue;
    part.level = level;
    part.leaves = Merged(std::move(part.leaves));
    if (CoversAll(part.leaves, stored.LeafCount())) part.leaves.clear();
    parts.push_back(std::move(part));
  }
}

/// All leaves stand below the members of any level.
void Positions::AddLevel(uint32_t level) {
  Part& part = parts.emplace_back();
  part.level = level;
  part.is_level = true;
}

Block Block::At(std::size_t row) const {
  Block one{context, nullptr};
  if (positions != nullptr) one.context.Set(positions->hierarchy, positions->ids[row]);
  return one;
}

void Column::SetNumber(std::size_t row, double number) {
  numbers[row] = number;
  states[row] = CellState::kNumber;
}

void Column::SetLogical(std::size_t row, bool value) {
  numbers[row] = value ? 1 : 0;
  states[row] = CellState::kLogical;
}

void Column::SetText(std::size_t row, std::string text) {
  if (texts.empty()) texts.resize(size());
  MemoryLimit::Count(text.size());
  texts[row] = std::move(text);
  numbers[row] = 0;
  states[row] = CellState::kText;
}

void Column::Copy(std::size_t row, const Column& from, std::size_t from_row) {
  if (from.states[from_row] == CellState::kText) {
    SetText(row, from.texts[from_row]);
  } else {
    numbers[row] = from.numbers[from_row];
    states[row] = from.states[from_row];
  }
}

MemberId MemberExpression::Evaluate(CellEvaluator& evaluator, const Context& context) const {
  const RecursionGuard deeper(evaluator);
  return Compute(evaluator, context);
}

TupleSet SetExpression::Evaluate(CellEvaluator& evaluator, const Context& context) const {
  const RecursionGuard deeper(evaluator);
  return Compute(evaluator, context);
}

Column ValueExpression::Evaluate(CellEvaluator& evaluator, const Block& block) const {
  const RecursionGuard deeper(evaluator);
  evaluator.guard().Check();
  return Compute(evaluator, block);
}

}  // namespace vok::olap
