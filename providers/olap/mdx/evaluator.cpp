#include "providers/olap/mdx/evaluator.h"

#include <algorithm>
#include <utility>

#include "providers/olap/mdx/axis_blocks.h"

namespace vok::olap {
namespace {

/// Calculated members and sets that need one another, at most so deep.
constexpr uint32_t kMaxDepth = 200;

/// Counts up while it lives.
class Deeper {
 public:
  Deeper(uint32_t& depth, const std::string& name, Place place) : depth_(depth) {
    if (depth_ >= kMaxDepth) {
      place.Fail(name +
                 " cannot be computed: its formula needs itself, or formulas need one another "
                 "more than " +
                 std::to_string(kMaxDepth) + " deep");
    }
    ++depth_;
  }
  ~Deeper() { --depth_; }
  Deeper(const Deeper&) = delete;
  Deeper& operator=(const Deeper&) = delete;

 private:
  uint32_t& depth_;
};

Context DefaultContext(const CubeView& cube) {
  Context context;
  context.regions.resize(cube.HierarchyCount(), nullptr);
  for (HierarchyId h = 0; h < cube.HierarchyCount(); ++h) {
    context.members.push_back(cube.DefaultMember(h));
  }
  return context;
}

}  // namespace

Evaluator::Evaluator(const CubeView& cube, const Query& query, const QueryGuard& guard)
    : cube_(cube),
      query_(query),
      guard_(guard),
      base_(DefaultContext(cube)),
      reads_(cube, guard),
      named_sets_(query.sets.size()) {}

void Evaluator::AnnounceCells(const Block& block) {
  announcing_ = true;
  Cells(block);
  announcing_ = false;
}

Column Evaluator::Cells(const Block& block) {
  guard_.Check();
  const HierarchyId deciding = DecidingHierarchy(query_, block.context.members);
  if (deciding != kNoHierarchy) {
    const CalculatedMember& member = query_.Member(block.context.members[deciding]);
    const Deeper deeper(depth_, member.unique_name, member.place);
    Block inner = block;
    inner.context.Set(deciding, cube_.DefaultMember(deciding));
    return member.formula->Evaluate(*this, inner);
  }
  if (!announcing_) return reads_.Read(block);
  reads_.Announce(block);
  return Column();
}

Column Evaluator::ValuesAt(const ValueExpression& expression, const Block& block,
                           const std::vector<HierarchyId>& hierarchies, const MemberId* members) {
  guard_.Check();
  if (!announcing_) reads_.Trim();
  Block inner = block;
  for (std::size_t i = 0; i < hierarchies.size(); ++i) {
    if (members[i] == kNoMember) return NewColumn(block);
    inner.context.Set(hierarchies[i], members[i]);
    if (hierarchies[i] == block.Varying()) inner.positions = nullptr;
  }
  Column values = expression.Evaluate(*this, inner);
  return inner.positions == block.positions ? values : Spread(values, block);
}

Column Evaluator::OnceForAll(const ValueExpression& expression, const Block& block) {
  return Spread(expression.Evaluate(*this, Block{block.context, nullptr}), block);
}

Column Evaluator::Spread(const Column& one, const Block& block) const {
  Column column = NewColumn(block);
  for (std::size_t row = 0; row < column.size(); ++row) column.Copy(row, one, 0);
  return column;
}

Column Evaluator::ByPosition(const ValueExpression& expression, const Block& block) {
  Column column = NewColumn(block);
  for (std::size_t row = 0; row < column.size(); ++row) {
    if (block.positions->ids[row] == kNoMember) continue;
    guard_.Check();
    column.Copy(row, expression.Evaluate(*this, block.At(row)), 0);
  }
  return column;
}

Column Evaluator::ValuesOver(const ValueExpression& expression, const TupleSet& set,
                             const Context& context) {
  const bool was_announcing = std::exchange(announcing_, false);
  Column all(set.size());
  for (const AxisBlock& part : CutIntoBlocks(cube_, guard_, set)) {
    guard_.Check();
    reads_.Trim();
    Block block{context, part.varying.get()};
    set.Apply(part.tuple, block.context);
    const Column values = expression.Evaluate(*this, block);
    for (std::size_t i = 0; i < part.rows.size(); ++i) all.Copy(part.rows[i], values, i);
  }
  announcing_ = was_announcing;
  return all;
}

Column Evaluator::Single(const ValueExpression& expression, const Context& context) {
  const bool was_announcing = std::exchange(announcing_, false);
  Column value = expression.Evaluate(*this, Block{context, nullptr});
  announcing_ = was_announcing;
  return value;
}

const TupleSet& Evaluator::Named(std::size_t set) {
  if (!named_sets_[set]) {
    const Deeper deeper(depth_, "the set [" + query_.sets[set].name + "]", query_.sets[set].place);
    TupleSet tuples = query_.sets[set].set->Evaluate(*this, base_);
    named_sets_[set] = std::move(tuples);
  }
  return *named_sets_[set];
}

MemberId Evaluator::Parent(HierarchyId hierarchy, MemberId member) const {
  if (member == kNoMember) return kNoMember;
  return IsCalculated(member) ? query_.Member(member).parent : cube_.Parent(hierarchy, member);
}

}  // namespace vok::olap
