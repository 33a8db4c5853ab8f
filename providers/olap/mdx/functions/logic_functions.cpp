// Values that depend on conditions.
#include <array>
#include <utility>

#include "providers/olap/mdx/evaluator.h"
#include "providers/olap/mdx/functions/registry.h"

namespace vok::olap {
namespace {

class IsEmptyValue : public ValueExpression {
 public:
  explicit IsEmptyValue(ValuePtr value)
      : ValueExpression(ValueKind::kLogical), value_(std::move(value)) {}
  bool DependsOn(HierarchyId hierarchy) const override { return value_->DependsOn(hierarchy); }
  Column Evaluate(Evaluator& evaluator, const Block& block) const override {
    const Column values = value_->Evaluate(evaluator, block);
    Column result = evaluator.NewColumn(block);
    for (std::size_t row = 0; row < result.size(); ++row) {
      result.SetNumber(row, values.states[row] == CellState::kEmpty ? 1 : 0);
    }
    return result;
  }

 private:
  ValuePtr value_;
};

/// Computes a branch only for the positions that take it: formulas end their recursion this way.
class Choice : public ValueExpression {
 public:
  Choice(ValuePtr condition, ValuePtr yes, ValuePtr no)
      : ValueExpression(yes->kind() == no->kind() ? yes->kind() : ValueKind::kNumber),
        condition_(std::move(condition)),
        yes_(std::move(yes)),
        no_(std::move(no)) {}

  bool DependsOn(HierarchyId hierarchy) const override {
    return condition_->DependsOn(hierarchy) || yes_->DependsOn(hierarchy) ||
           no_->DependsOn(hierarchy);
  }

  Column Evaluate(Evaluator& evaluator, const Block& block) const override {
    const Column condition = condition_->Evaluate(evaluator, block);
    if (evaluator.announcing()) return Column();
    std::vector<uint32_t> taken[2];
    for (uint32_t row = 0; row < condition.size(); ++row) {
      taken[condition.numbers[row] != 0 ? 1 : 0].push_back(row);
    }
    if (taken[0].empty()) return yes_->Evaluate(evaluator, block);
    if (taken[1].empty()) return no_->Evaluate(evaluator, block);
    Column result = evaluator.NewColumn(block);
    Fill(evaluator, block, *yes_, taken[1], result);
    Fill(evaluator, block, *no_, taken[0], result);
    return result;
  }

 private:
  static void Fill(Evaluator& evaluator, const Block& block, const ValueExpression& branch,
                   const std::vector<uint32_t>& rows, Column& result) {
    std::vector<MemberId> ids;
    for (const uint32_t row : rows) ids.push_back(block.positions->ids[row]);
    const Positions positions(evaluator.cube(), block.Varying(), std::move(ids));
    const Column values = branch.Evaluate(evaluator, Block{block.context, &positions});
    for (std::size_t i = 0; i < rows.size(); ++i) result.Copy(rows[i], values, i);
  }

  ValuePtr condition_;
  ValuePtr yes_;
  ValuePtr no_;
};

Operand IIf(Call& call) {
  return std::make_unique<Choice>(call.Value(0), call.Value(1), call.Value(2));
}

Operand IsEmpty(Call& call) { return std::make_unique<IsEmptyValue>(call.Value(0)); }

constexpr std::array<Function, 2> kFunctions = {{
    {"IIf", false, "bvv", IIf},
    {"IsEmpty", false, "v", IsEmpty},
}};

}  // namespace

std::span<const Function> LogicFunctions() { return kFunctions; }

}  // namespace vok::olap
