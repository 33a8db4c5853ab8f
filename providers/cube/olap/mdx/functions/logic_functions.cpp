// Values that depend on conditions.
#include <algorithm>
#include <array>
#include <utility>

#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/conditions.h"
#include "providers/cube/olap/mdx/functions/registry.h"

namespace vok::olap {
namespace {

class IsEmptyValue : public ValueExpression {
 public:
  explicit IsEmptyValue(ValuePtr value)
      : ValueExpression(ValueKind::kLogical), value_(std::move(value)) {}
  bool DependsOn(HierarchyId hierarchy) const override { return value_->DependsOn(hierarchy); }
  Column Compute(CellEvaluator& evaluator, const Block& block) const override {
    const Column values = value_->Evaluate(evaluator, block);
    Column result = evaluator.NewColumn(block);
    for (std::size_t row = 0; row < result.size(); ++row) {
      result.SetLogical(row, values.states[row] == CellState::kEmpty);
    }
    return result;
  }

 private:
  ValuePtr value_;
};

/// The first value that is there.
class FirstValue : public ValueExpression {
 public:
  explicit FirstValue(std::vector<ValuePtr> values)
      : ValueExpression(values.front()->kind()), values_(std::move(values)) {}
  bool DependsOn(HierarchyId hierarchy) const override {
    return std::any_of(values_.begin(), values_.end(),
                       [hierarchy](const ValuePtr& value) { return value->DependsOn(hierarchy); });
  }
  Column Compute(CellEvaluator& evaluator, const Block& block) const override {
    Column result = values_.front()->Evaluate(evaluator, block);
    for (std::size_t i = 1; i < values_.size(); ++i) {
      const Column next = values_[i]->Evaluate(evaluator, block);
      for (std::size_t row = 0; row < result.size(); ++row) {
        if (result.states[row] == CellState::kEmpty) result.Copy(row, next, row);
      }
    }
    return result;
  }

 private:
  std::vector<ValuePtr> values_;
};

Operand IIf(Call& call) { return NewChoice(call.Value(0), call.Value(1), call.Value(2)); }

Operand IsEmpty(Call& call) { return std::make_unique<IsEmptyValue>(call.Value(0)); }

Operand CoalesceEmpty(Call& call) {
  std::vector<ValuePtr> values;
  for (std::size_t i = 0; call.Has(i); ++i) values.push_back(call.Value(i));
  return std::make_unique<FirstValue>(std::move(values));
}

constexpr std::array<Function, 3> kLogicFunctions = {{
    {"IIf", false, "bvv", IIf},
    {"IsEmpty", false, "v", IsEmpty},
    {"CoalesceEmpty", false, "vv*", CoalesceEmpty},
}};

}  // namespace

std::span<const Function> LogicFunctions() { return kLogicFunctions; }

}  // namespace vok::olap
