// One value out of the values at many tuples.
#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "providers/olap/mdx/basic_expressions.h"
#include "providers/olap/mdx/evaluator.h"
#include "providers/olap/mdx/functions/registry.h"
#include "providers/olap/mdx/leaf_ranges.h"
#include "providers/olap/mdx/operators.h"

namespace vok::olap {
namespace {

bool AddsUp(Aggregator aggregator) {
  return aggregator == Aggregator::kSum || aggregator == Aggregator::kCount;
}

class Sum : public ValueExpression {
 public:
  Sum(SetPtr set, ValuePtr value) : set_(std::move(set)), value_(std::move(value)) {}

  bool DependsOn(HierarchyId) const override { return true; }

  Column Evaluate(Evaluator& evaluator, const Block& block) const override {
    if (block.positions != nullptr && set_->DependsOn(block.Varying())) {
      return evaluator.ByPosition(*this, block);
    }
    const TupleSet set = set_->Evaluate(evaluator, block.context);
    if (std::optional<Context> merged = Merge(evaluator, block, set)) {
      return evaluator.Cells(Block{std::move(*merged), block.positions});
    }
    Column sum = evaluator.NewColumn(block);
    for (std::size_t i = 0; i < set.size(); ++i) {
      const Column values = evaluator.ValuesAt(*value_, block, set.hierarchies, set.tuple(i));
      RequireNumbers(values);
      for (std::size_t row = 0; row < sum.size(); ++row) {
        if (values.states[row] == CellState::kEmpty) continue;
        sum.SetNumber(row, sum.numbers[row] + values.numbers[row]);
      }
    }
    return sum;
  }

 private:
  /// Members of one hierarchy that share no leaf, and a stored measure that adds up: the sum is the
  /// measure over all their leaves, read at once and rounded once.
  std::optional<Context> Merge(Evaluator& evaluator, const Block& block,
                               const TupleSet& set) const {
    if (set.arity() != 1 || set.hierarchies[0] == kMeasures) return std::nullopt;
    const HierarchyId hierarchy = set.hierarchies[0];
    if (hierarchy == block.Varying()) return std::nullopt;
    Context context = block.context;
    if (!value_->MoveTo(evaluator, block, hierarchy, context)) return std::nullopt;
    if (!IsPlain(evaluator, context, hierarchy)) return std::nullopt;
    std::optional<LeafRanges> leaves = DisjointLeaves(evaluator.cube().Stored(hierarchy), set);
    if (!leaves) return std::nullopt;
    context.members[hierarchy] = evaluator.cube().DefaultMember(hierarchy);
    context.regions[hierarchy] = evaluator.Keep(std::move(*leaves));
    return context;
  }

  static bool IsPlain(const Evaluator& evaluator, const Context& context, HierarchyId hierarchy) {
    for (HierarchyId h = 0; h < context.members.size(); ++h) {
      if (h != hierarchy && !IsStored(context.members[h])) return false;
    }
    return AddsUp(evaluator.cube().model().measures[context.members[kMeasures]].aggregator);
  }

  static std::optional<LeafRanges> DisjointLeaves(const Hierarchy& hierarchy, const TupleSet& set) {
    LeafRanges leaves;
    for (const MemberId id : set.ids) {
      if (!IsStored(id)) return std::nullopt;
      leaves.push_back(hierarchy.Leaves(id));
    }
    if (!Disjoint(leaves)) return std::nullopt;
    return Merged(std::move(leaves));
  }

  SetPtr set_;
  ValuePtr value_;
};

Operand MakeSum(Call& call) {
  ValuePtr value = call.Has(1) ? call.Value(1) : NewCellValue({});
  return std::make_unique<Sum>(call.Set(0), std::move(value));
}

constexpr std::array<Function, 1> kFunctions = {{
    {"Sum", false, "s|n", MakeSum},
}};

}  // namespace

std::span<const Function> AggregateFunctions() { return kFunctions; }

}  // namespace vok::olap
