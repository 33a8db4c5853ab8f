#include "providers/cube/olap/mdx/conditions.h"

#include <utility>

#include "providers/cube/olap/mdx/cell_evaluator.h"

namespace vok::olap {
namespace {

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

  Column Compute(CellEvaluator& evaluator, const Block& block) const override {
    const Column condition = condition_->Evaluate(evaluator, block);
    if (evaluator.announcing()) return Column();
    Rows taken[2];
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
  static void Fill(CellEvaluator& evaluator, const Block& block, const ValueExpression& branch,
                   const Rows& rows, Column& result) {
    MemberIds ids;
    for (const uint32_t row : rows) ids.push_back(block.positions->ids[row]);
    const Positions positions(evaluator.cube(), block.Varying(), std::move(ids));
    const Column values = branch.Evaluate(evaluator, Block{block.context, &positions});
    for (std::size_t i = 0; i < rows.size(); ++i) result.Copy(rows[i], values, i);
  }

  ValuePtr condition_;
  ValuePtr yes_;
  ValuePtr no_;
};

class SameMember : public ValueExpression {
 public:
  SameMember(MemberPtr member, MemberPtr with)
      : ValueExpression(ValueKind::kLogical), member_(std::move(member)), with_(std::move(with)) {}
  bool DependsOn(HierarchyId hierarchy) const override {
    return member_->DependsOn(hierarchy) || (with_ != nullptr && with_->DependsOn(hierarchy));
  }
  Column Compute(CellEvaluator& evaluator, const Block& block) const override {
    Column result = evaluator.NewColumn(block);
    Context context = block.context;
    for (std::size_t row = 0; row < result.size(); ++row) {
      evaluator.guard().CheckAt(row);
      if (block.positions != nullptr) context.Set(block.Varying(), block.positions->ids[row]);
      const MemberId member = member_->Evaluate(evaluator, context);
      const MemberId with = with_ == nullptr ? kNoMember : with_->Evaluate(evaluator, context);
      const bool comparable = with_ == nullptr || with_->hierarchy() == member_->hierarchy();
      result.SetLogical(row, comparable && member == with);
    }
    return result;
  }

 private:
  MemberPtr member_;
  MemberPtr with_;
};

}  // namespace

ValuePtr NewChoice(ValuePtr condition, ValuePtr yes, ValuePtr no) {
  return std::make_unique<Choice>(std::move(condition), std::move(yes), std::move(no));
}

ValuePtr NewSameMember(MemberPtr member, MemberPtr with) {
  return std::make_unique<SameMember>(std::move(member), std::move(with));
}

}  // namespace vok::olap
