#include "providers/cube/olap/mdx/cell_evaluator.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "providers/cube/olap/mdx/axis_blocks.h"

namespace vok::olap {
namespace {

Context DefaultContext(const CubeView& cube) {
  Context context;
  context.regions.resize(cube.HierarchyCount(), nullptr);
  for (HierarchyId h = 0; h < cube.HierarchyCount(); ++h) {
    context.members.push_back(cube.DefaultMember(h));
  }
  return context;
}

}  // namespace

CellEvaluator::CellEvaluator(const CubeView& cube, const Query& query, const QueryGuard& guard)
    : cube_(cube),
      query_(query),
      guard_(guard),
      base_(DefaultContext(cube)),
      fact_cache_(cube, guard),
      named_sets_(query.sets.size()) {}

void CellEvaluator::AnnounceCells(const Block& block) {
  announcing_ = true;
  Cells(block);
  announcing_ = false;
}

Column CellEvaluator::Cells(const Block& block) {
  const RecursionGuard deeper(*this);
  guard_.Check();
  const HierarchyId deciding = DecidingHierarchy(query_, block.context.members);
  if (deciding == kNoHierarchy) return StoredCells(block);
  return MemberCells(block, query_.Member(block.context.members[deciding]), deciding);
}

Column CellEvaluator::StoredCells(const Block& block) {
  if (announcing_) {
    fact_cache_.Announce(block);
    return Column();
  }
  Column cells = fact_cache_.Read(block);
  if (!cells.overflows) return cells;
  for (std::size_t row = 0; row < cells.size(); ++row) {
    if (std::isfinite(cells.numbers[row])) continue;
    throw Failure(failure_number::kOverflow,
                  "Overflow: the facts at " + CellName(block, row, kMeasures) +
                      " add up to more than the largest number (1.8E308). " +
                      "Ask for fewer of them, or correct them.");
  }
  return cells;
}

/// Only what other formulas need is kept: what a query asks for itself it asks for once. What is
/// found counts as deep as it was to compute, so that no order of computing changes an answer.
Column CellEvaluator::MemberCells(const Block& block, const CalculatedMember& member,
                                  HierarchyId hierarchy) {
  CellMemo& memo = announcing_ ? announced_ : computed_;
  const CellMemo::Computed* known = formulas_ == 0 ? nullptr : memo.Find(block);
  if (known != nullptr) {
    if (depth_ + known->depth > kMaxDepth) FailTooDeep();
    deepest_ = std::max(deepest_, depth_ + known->depth);
    return known->cells;
  }
  const uint32_t deepest_before = std::exchange(deepest_, depth_);
  Block inner = block;
  inner.context.Set(hierarchy, cube_.DefaultMember(hierarchy));
  Column cells = Computed(inner, member);
  if (formulas_ > 0) memo.Keep(block, {cells, deepest_ - depth_});
  deepest_ = std::max(deepest_, deepest_before);
  return cells;
}

Column CellEvaluator::Computed(const Block& block, const CalculatedMember& member) {
  const Work before = std::exchange(work_, {member.unique_name, member.place});
  ++formulas_;
  Column cells = member.formula->Evaluate(*this, block);
  --formulas_;
  work_ = before;
  return cells;
}

Column CellEvaluator::ValuesAt(const ValueExpression& expression, const Block& block,
                               const std::vector<HierarchyId>& hierarchies,
                               const MemberId* members) {
  const RecursionGuard deeper(*this);
  guard_.Check();
  if (!announcing_) fact_cache_.Trim();
  Block inner = block;
  for (std::size_t i = 0; i < hierarchies.size(); ++i) {
    if (members[i] == kNoMember) return NewColumn(block);
    inner.context.Set(hierarchies[i], members[i]);
    if (hierarchies[i] == block.Varying()) inner.positions = nullptr;
  }
  Column values = expression.Evaluate(*this, inner);
  return inner.positions == block.positions ? values : Spread(values, block);
}

Column CellEvaluator::OnceForAll(const ValueExpression& expression, const Block& block) {
  return Spread(expression.Evaluate(*this, Block{block.context, nullptr}), block);
}

Column CellEvaluator::Spread(const Column& one, const Block& block) const {
  Column column = NewColumn(block);
  for (std::size_t row = 0; row < column.size(); ++row) column.Copy(row, one, 0);
  return column;
}

Column CellEvaluator::ByPosition(const ValueExpression& expression, const Block& block) {
  Column column = NewColumn(block);
  for (std::size_t row = 0; row < column.size(); ++row) {
    if (block.positions->ids[row] == kNoMember) continue;
    guard_.Check();
    column.Copy(row, expression.Evaluate(*this, block.At(row)), 0);
  }
  return column;
}

Column CellEvaluator::ValuesOver(const ValueExpression& expression, const TupleSet& set,
                                 const Context& context) {
  const RecursionGuard deeper(*this);
  const bool was_announcing = std::exchange(announcing_, false);
  Column all(set.size());
  for (const AxisBlock& part : CutIntoBlocks(cube_, guard_, set)) {
    guard_.Check();
    fact_cache_.Trim();
    Block block{context, part.varying.get()};
    set.Apply(part.tuple, block.context);
    Column values = expression.Evaluate(*this, block);
    if (part.IsWhole()) {
      all = std::move(values);
      continue;
    }
    for (std::size_t i = 0; i < part.rows.size(); ++i) all.Copy(part.rows[i], values, i);
  }
  announcing_ = was_announcing;
  return all;
}

Column CellEvaluator::Single(const ValueExpression& expression, const Context& context) {
  const bool was_announcing = std::exchange(announcing_, false);
  Column value = expression.Evaluate(*this, Block{context, nullptr});
  announcing_ = was_announcing;
  return value;
}

TupleSet CellEvaluator::SetOf(const SetExpression& set, const std::string& name, Place place) {
  const Work before = std::exchange(work_, {name, place});
  TupleSet tuples = set.Evaluate(*this, base_);
  work_ = before;
  return tuples;
}

const TupleSet& CellEvaluator::Named(std::size_t set) {
  if (!named_sets_[set]) {
    const NamedSet& named = query_.sets[set];
    TupleSet tuples = SetOf(*named.set, "the set " + Bracketed(named.name), named.place);
    named_sets_[set] = std::move(tuples);
  }
  return *named_sets_[set];
}

MemberId CellEvaluator::Parent(HierarchyId hierarchy, MemberId member) const {
  if (member == kNoMember) return kNoMember;
  return IsCalculated(member) ? query_.Member(member).parent : cube_.Parent(hierarchy, member);
}

bool CellEvaluator::RangesBefore::operator()(const LeafRanges& a, const LeafRanges& b) const {
  return std::lexicographical_compare(
      a.begin(), a.end(), b.begin(), b.end(), [](const IdRange& x, const IdRange& y) {
        return std::pair(x.begin, x.end) < std::pair(y.begin, y.end);
      });
}

void CellEvaluator::FailTooLarge(const std::string& what, Place place, const Block& block,
                                 std::size_t row) const {
  place.Fail(what + " is beyond the largest number (1.8E308) at " +
             CellName(block, row, kMeasures + 1));
}

/// The members of the cell at `row`, those of `first` and the hierarchies after it.
std::string CellEvaluator::CellName(const Block& block, std::size_t row, HierarchyId first) const {
  const Context context = block.At(row).context;
  std::string name;
  for (HierarchyId h = first; h < context.members.size(); ++h) {
    const MemberId member = context.members[h];
    if (!name.empty()) name += ", ";
    if (context.regions[h] != nullptr || member == kNoMember) {
      name += cube_.HierarchyUniqueName(h);
    } else {
      name +=
          IsCalculated(member) ? query_.Member(member).unique_name : cube_.UniqueName(h, member);
    }
  }
  return name;
}

void CellEvaluator::FailTooDeep() const {
  throw TooDeep(work_.place.FailureOf(
      std::string(work_.name) + " cannot be computed: its formula needs itself, or formulas and " +
      "functions need one another more than " + std::to_string(kMaxDepth) + " steps deep"));
}

}  // namespace vok::olap
