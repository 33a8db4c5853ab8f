#include "providers/cube/olap/mdx/set_operations.h"

#include <algorithm>
#include <utility>

#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/distinct_tuples.h"

namespace vok::olap {
namespace {

enum class Operation { kUnion, kUnionAll, kExcept, kIntersect, kIntersectAll };

TupleSet Chosen(const QueryGuard& guard, const TupleSet& from, const TupleSet& by, bool wanted) {
  TupleIndex index(by.arity());
  for (std::size_t i = 0; i < by.size(); ++i) {
    guard.CheckAt(i);
    index.Add(by.tuple(i));
  }
  TupleSet chosen{from.hierarchies, {}};
  for (std::size_t i = 0; i < from.size(); ++i) {
    guard.CheckAt(i);
    if (index.Contains(from.tuple(i)) == wanted) chosen.Add(from.tuple(i));
  }
  return chosen;
}

/// A set made of two. The sets are taken by reference: `hierarchies` may be asked of them in the
/// same call.
class SetOfTwo : public SetExpression {
 public:
  SetOfTwo(std::vector<HierarchyId> hierarchies, SetPtr&& first, SetPtr&& second, Place place)
      : SetExpression(std::move(hierarchies)),
        first_(std::move(first)),
        second_(std::move(second)),
        place_(place) {}

  bool DependsOn(HierarchyId hierarchy) const override {
    return first_->DependsOn(hierarchy) || second_->DependsOn(hierarchy);
  }

 protected:
  SetPtr first_;
  SetPtr second_;
  Place place_;
};

class CombinedSet : public SetOfTwo {
 public:
  CombinedSet(Operation operation, std::vector<HierarchyId> hierarchies, SetPtr first,
              SetPtr second, Place place)
      : SetOfTwo(std::move(hierarchies), std::move(first), std::move(second), place),
        operation_(operation) {}

  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    TupleSet a = first_->Evaluate(evaluator, context);
    TupleSet b = second_->Evaluate(evaluator, context);
    a.hierarchies = b.hierarchies = hierarchies();
    const QueryGuard& guard = evaluator.guard();
    guard.CheckTuples(a.size() + b.size(), place_);
    switch (operation_) {
      case Operation::kUnion:
      case Operation::kUnionAll:
        a.ids.insert(a.ids.end(), b.ids.begin(), b.ids.end());
        return operation_ == Operation::kUnion ? Distinct(guard, a) : a;
      case Operation::kExcept:
        return Chosen(guard, a, b, false);
      case Operation::kIntersect:
        return Distinct(guard, Chosen(guard, a, b, true));
      case Operation::kIntersectAll:
        return Chosen(guard, a, b, true);
    }
    return a;
  }

 private:
  Operation operation_;
};

SetPtr Combined(Operation operation, SetPtr first, SetPtr second, Place place) {
  std::vector<HierarchyId> common = CommonHierarchies(*first, *second, place);
  return std::make_unique<CombinedSet>(operation, std::move(common), std::move(first),
                                       std::move(second), place);
}

class DistinctSet : public SetExpression {
 public:
  explicit DistinctSet(SetPtr set) : SetExpression(set->hierarchies()), set_(std::move(set)) {}
  bool DependsOn(HierarchyId hierarchy) const override { return set_->DependsOn(hierarchy); }
  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    return Distinct(evaluator.guard(), set_->Evaluate(evaluator, context));
  }

 private:
  SetPtr set_;
};

std::vector<HierarchyId> Both(const std::vector<HierarchyId>& first,
                              const std::vector<HierarchyId>& second) {
  std::vector<HierarchyId> both = first;
  both.insert(both.end(), second.begin(), second.end());
  return both;
}

class CrossJoinSet : public SetOfTwo {
 public:
  CrossJoinSet(SetPtr first, SetPtr second, Place place)
      : SetOfTwo(Both(first->hierarchies(), second->hierarchies()), std::move(first),
                 std::move(second), place) {}

  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    const TupleSet a = first_->Evaluate(evaluator, context);
    const TupleSet b = second_->Evaluate(evaluator, context);
    const std::size_t most = evaluator.guard().max_tuples();
    const std::size_t of_each = b.size();
    if (of_each > 0 && a.size() > most / of_each) {
      place_.Fail("a cross join of " + std::to_string(a.size()) + " by " + std::to_string(of_each) +
                  " is past the limit of " + std::to_string(most) +
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
};

}  // namespace

std::vector<HierarchyId> CommonHierarchies(const SetExpression& a, const SetExpression& b,
                                           Place place) {
  if (a.hierarchies().empty()) return b.hierarchies();
  if (!b.hierarchies().empty() && a.hierarchies() != b.hierarchies()) {
    place.Fail("both sets must be of the same hierarchies, in the same order");
  }
  return a.hierarchies();
}

SetPtr NewUnion(SetPtr first, SetPtr second, bool all, Place place) {
  return Combined(all ? Operation::kUnionAll : Operation::kUnion, std::move(first),
                  std::move(second), place);
}

SetPtr NewExcept(SetPtr first, SetPtr second, Place place) {
  return Combined(Operation::kExcept, std::move(first), std::move(second), place);
}

SetPtr NewIntersect(SetPtr first, SetPtr second, bool all, Place place) {
  return Combined(all ? Operation::kIntersectAll : Operation::kIntersect, std::move(first),
                  std::move(second), place);
}

SetPtr NewDistinct(SetPtr set) { return std::make_unique<DistinctSet>(std::move(set)); }

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
