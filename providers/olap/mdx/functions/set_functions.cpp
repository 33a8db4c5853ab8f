// From sets to sets.
#include <algorithm>
#include <array>
#include <utility>

#include "providers/olap/mdx/cross_join.h"
#include "providers/olap/mdx/evaluator.h"
#include "providers/olap/mdx/functions/registry.h"
#include "providers/olap/mdx/whole_number.h"

namespace vok::olap {
namespace {

Operand CrossJoin(Call& call) {
  SetPtr joined = call.Set(0);
  for (std::size_t i = 1; call.Has(i); ++i) {
    joined = NewCrossJoin(std::move(joined), call.Set(i), call.source, call.offset);
  }
  return joined;
}

/// The first or the last tuples of a set.
class EndOfSet : public SetExpression {
 public:
  EndOfSet(SetPtr set, ValuePtr count, bool from_end)
      : SetExpression(set->hierarchies()),
        set_(std::move(set)),
        count_(std::move(count)),
        from_end_(from_end) {}
  bool DependsOn(HierarchyId hierarchy) const override {
    return set_->DependsOn(hierarchy) || (count_ != nullptr && count_->DependsOn(hierarchy));
  }
  TupleSet Evaluate(Evaluator& evaluator, const Context& context) const override {
    TupleSet set = set_->Evaluate(evaluator, context);
    const int64_t wanted = count_ == nullptr ? 1 : WholeNumber(evaluator, *count_, context);
    const auto size = static_cast<int64_t>(set.size());
    const int64_t kept = std::clamp<int64_t>(wanted, 0, size);
    const auto arity = static_cast<int64_t>(set.arity());
    if (from_end_) {
      set.ids.erase(set.ids.begin(), set.ids.begin() + (size - kept) * arity);
    } else {
      set.ids.resize(static_cast<std::size_t>(kept * arity));
    }
    return set;
  }

 private:
  SetPtr set_;
  ValuePtr count_;  ///< nullptr: 1
  bool from_end_;
};

Operand Head(Call& call) {
  return std::make_unique<EndOfSet>(call.Set(0), call.Has(1) ? call.Value(1) : nullptr, false);
}

Operand Tail(Call& call) {
  return std::make_unique<EndOfSet>(call.Set(0), call.Has(1) ? call.Value(1) : nullptr, true);
}

constexpr std::array<Function, 3> kFunctions = {{
    {"CrossJoin", false, "ss*", CrossJoin},
    {"Head", false, "s|n", Head},
    {"Tail", false, "s|n", Tail},
}};

}  // namespace

std::span<const Function> SetFunctions() { return kFunctions; }

}  // namespace vok::olap
