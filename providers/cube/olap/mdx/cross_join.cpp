#include "providers/cube/olap/mdx/cross_join.h"

#include <algorithm>
#include <utility>

#include "providers/cube/olap/mdx/cell_evaluator.h"

namespace vok::olap {
namespace {

std::vector<HierarchyId> Both(const std::vector<HierarchyId>& first,
                              const std::vector<HierarchyId>& second) {
  std::vector<HierarchyId> both = first;
  both.insert(both.end(), second.begin(), second.end());
  return both;
}

class CrossJoinSet : public SetExpression {
 public:
  CrossJoinSet(SetPtr first, SetPtr second, Place place)
      : SetExpression(Both(first->hierarchies(), second->hierarchies())),
        first_(std::move(first)),
        second_(std::move(second)),
        place_(place) {}

  bool DependsOn(HierarchyId hierarchy) const override {
    return first_->DependsOn(hierarchy) || second_->DependsOn(hierarchy);
  }

  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    const TupleSet a = first_->Evaluate(evaluator, context);
    const TupleSet b = second_->Evaluate(evaluator, context);
    const std::size_t most = evaluator.guard().max_tuples();
    if (b.size() > 0 && a.size() > most / b.size()) {
      place_.Fail("a cross join of " + std::to_string(a.size()) + " by " +
                  std::to_string(b.size()) + " is past the limit of " + std::to_string(most) +
                  " tuples. Ask for fewer members");
    }
    TupleSet joined{hierarchies(), {}};
    joined.ids.reserve(a.size() * b.size() * hierarchies().size());
    for (std::size_t i = 0; i < a.size(); ++i) {
      evaluator.guard().Check();
      for (std::size_t j = 0; j < b.size(); ++j) {
        const MemberId* from = a.tuple(i);
        joined.ids.insert(joined.ids.end(), from, from + a.arity());
        from = b.tuple(j);
        joined.ids.insert(joined.ids.end(), from, from + b.arity());
      }
    }
    return joined;
  }

 private:
  SetPtr first_;
  SetPtr second_;
  Place place_;
};

}  // namespace

SetPtr NewCrossJoin(SetPtr first, SetPtr second, Place place) {
  for (const HierarchyId hierarchy : second->hierarchies()) {
    const auto& others = first->hierarchies();
    if (std::find(others.begin(), others.end(), hierarchy) != others.end()) {
      place.Fail("both sets of the cross join are over the same hierarchy");
    }
  }
  return std::make_unique<CrossJoinSet>(std::move(first), std::move(second), place);
}

}  // namespace vok::olap
