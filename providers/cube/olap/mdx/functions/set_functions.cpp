// From sets to sets, by what they hold and not by values.
#include <algorithm>
#include <array>
#include <utility>

#include "providers/cube/olap/mdx/basic_expressions.h"
#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/functions/registry.h"
#include "providers/cube/olap/mdx/set_operations.h"
#include "providers/cube/olap/mdx/whole_number.h"

namespace vok::olap {
namespace {

Operand CrossJoin(Call& call) {
  SetPtr joined = call.Set(0);
  for (std::size_t i = 1; call.Has(i); ++i) {
    joined = NewCrossJoin(std::move(joined), call.Set(i), call.place());
  }
  return joined;
}

/// Consecutive tuples of a set.
class PartOfSet : public SetExpression {
 public:
  enum class From { kBegin, kEnd, kStart };

  PartOfSet(SetPtr set, From from, ValuePtr start, ValuePtr count, Place place)
      : SetExpression(set->hierarchies()),
        set_(std::move(set)),
        from_(from),
        start_(std::move(start)),
        count_(std::move(count)),
        place_(place) {}

  bool DependsOn(HierarchyId hierarchy) const override {
    return set_->DependsOn(hierarchy) || (count_ != nullptr && count_->DependsOn(hierarchy)) ||
           (start_ != nullptr && start_->DependsOn(hierarchy));
  }

  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    TupleSet set = set_->Evaluate(evaluator, context);
    const auto number = [&](const ValuePtr& value, int64_t otherwise) {
      return value == nullptr ? otherwise : WholeNumber(evaluator, *value, context, place_);
    };
    const auto size = static_cast<int64_t>(set.size());
    const int64_t wanted = number(count_, from_ == From::kStart ? size : 1);
    int64_t begin = from_ == From::kEnd ? std::max<int64_t>(size - wanted, 0) : 0;
    if (from_ == From::kStart) begin = number(start_, 0);
    if (begin < 0 || wanted <= 0) return {set.hierarchies, {}};
    begin = std::min(begin, size);
    const int64_t end = std::min(begin + wanted, size);
    const auto arity = static_cast<int64_t>(set.arity());
    set.ids.erase(set.ids.begin() + end * arity, set.ids.end());
    set.ids.erase(set.ids.begin(), set.ids.begin() + begin * arity);
    return set;
  }

 private:
  SetPtr set_;
  From from_;
  ValuePtr start_;  ///< nullptr: 0
  ValuePtr count_;  ///< nullptr: 1, or all after the start
  Place place_;
};

template <PartOfSet::From kFrom>
Operand EndOfSet(Call& call) {
  return std::make_unique<PartOfSet>(call.Set(0), kFrom, nullptr, call.ValueOrNone(1),
                                     call.place());
}

Operand Subset(Call& call) {
  return std::make_unique<PartOfSet>(call.Set(0), PartOfSet::From::kStart, call.Value(1),
                                     call.ValueOrNone(2), call.place());
}

Operand Union(Call& call) {
  const bool all = call.Flag(2, {"ALL"}, 1) == 0;
  return NewUnion(call.Set(0), call.Set(1), all, call.place());
}

Operand Except(Call& call) {
  call.Flag(2, {"ALL"}, 0);
  return NewExcept(call.Set(0), call.Set(1), call.place());
}

Operand Intersect(Call& call) {
  const bool all = call.Flag(2, {"ALL"}, 1) == 0;
  return NewIntersect(call.Set(0), call.Set(1), all, call.place());
}

Operand DistinctSet(Call& call) { return NewDistinct(call.Set(0)); }

constexpr std::array<Function, 8> kSetFunctions = {{
    {"CrossJoin", false, "ss*", CrossJoin},
    {"Head", false, "s|n", EndOfSet<PartOfSet::From::kBegin>},
    {"Tail", false, "s|n", EndOfSet<PartOfSet::From::kEnd>},
    {"Subset", false, "sn|n", Subset},
    {"Union", false, "ss|f", Union},
    {"Except", false, "ss|f", Except},
    {"Intersect", false, "ss|f", Intersect},
    {"Distinct", false, "s", DistinctSet},
}};

}  // namespace

std::span<const Function> SetFunctions() { return kSetFunctions; }

}  // namespace vok::olap
