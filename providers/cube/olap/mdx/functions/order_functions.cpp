// Sets chosen and ordered by values, or by the order of the hierarchy.
#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/functions/registry.h"
#include "providers/cube/olap/mdx/sort_keys.h"
#include "providers/cube/olap/mdx/whole_number.h"

namespace vok::olap {
namespace {

Rows AllRows(const TupleSet& set) {
  Rows rows(set.size());
  std::iota(rows.begin(), rows.end(), 0);
  return rows;
}

TupleSet AtRows(const TupleSet& set, const Rows& rows) {
  TupleSet chosen{set.hierarchies, {}};
  chosen.ids.reserve(rows.size() * set.arity());
  for (const uint32_t row : rows) chosen.Add(set.tuple(row));
  return chosen;
}

/// A set and a value at each of its tuples.
class ValuedSet : public SetExpression {
 public:
  ValuedSet(SetPtr set, ValuePtr value)
      : SetExpression(set->hierarchies()), set_(std::move(set)), value_(std::move(value)) {}

  bool DependsOn(HierarchyId hierarchy) const override {
    if (set_->DependsOn(hierarchy)) return true;
    const auto& own = hierarchies();
    if (std::find(own.begin(), own.end(), hierarchy) != own.end()) return false;
    return value_ != nullptr && value_->DependsOn(hierarchy);
  }

 protected:
  TupleSet Set(CellEvaluator& evaluator, const Context& context) const {
    return set_->Evaluate(evaluator, context);
  }
  Column Values(CellEvaluator& evaluator, const TupleSet& set, const Context& context) const {
    return evaluator.ValuesOver(*value_, set, context);
  }
  const ValueExpression& value() const { return *value_; }
  bool HasValue() const { return value_ != nullptr; }

 private:
  SetPtr set_;
  ValuePtr value_;
};

class FilteredSet : public ValuedSet {
 public:
  using ValuedSet::ValuedSet;
  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    const TupleSet set = Set(evaluator, context);
    const Column taken = Values(evaluator, set, context);
    TupleSet kept{hierarchies(), {}};
    for (std::size_t row = 0; row < set.size(); ++row) {
      if (taken.numbers[row] != 0) kept.Add(set.tuple(row));
    }
    return kept;
  }
};

class OrderedSet : public ValuedSet {
 public:
  OrderedSet(SetPtr set, ValuePtr value, bool descending, bool keeps_hierarchy)
      : ValuedSet(std::move(set), std::move(value)),
        descending_(descending),
        keeps_hierarchy_(keeps_hierarchy) {}

  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    const TupleSet set = Set(evaluator, context);
    Rows rows = AllRows(set);
    if (keeps_hierarchy_) {
      const SiblingKeys keys(evaluator, set, value(), context);
      SortRows(evaluator.guard(), rows,
               [&](uint32_t a, uint32_t b) { return keys.IsBefore(a, b, descending_); });
    } else {
      SortByValue(evaluator.guard(), Values(evaluator, set, context), descending_, rows);
    }
    return AtRows(set, rows);
  }

 private:
  bool descending_;
  bool keeps_hierarchy_;
};

/// The tuples of the largest or least values, those first.
class ExtremeSet : public ValuedSet {
 public:
  ExtremeSet(SetPtr set, ValuePtr count, ValuePtr value, bool largest, Place place)
      : ValuedSet(std::move(set), std::move(value)),
        count_(std::move(count)),
        largest_(largest),
        place_(place) {}

  bool DependsOn(HierarchyId hierarchy) const override {
    return ValuedSet::DependsOn(hierarchy) || count_->DependsOn(hierarchy);
  }

  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    const TupleSet set = Set(evaluator, context);
    const int64_t count = WholeNumber(evaluator, *count_, context, place_);
    if (count < 0) place_.Fail("the number of tuples is below 0");
    Rows rows = AllRows(set);
    if (HasValue()) SortByValue(evaluator.guard(), Values(evaluator, set, context), largest_, rows);
    if (static_cast<std::size_t>(count) < rows.size()) rows.resize(static_cast<std::size_t>(count));
    return AtRows(set, rows);
  }

 private:
  ValuePtr count_;
  bool largest_;
  Place place_;
};

class HierarchizedSet : public ValuedSet {
 public:
  HierarchizedSet(SetPtr set, bool children_first)
      : ValuedSet(std::move(set), nullptr), children_first_(children_first) {}
  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    const TupleSet set = Set(evaluator, context);
    const PathKeys keys(evaluator, set);
    Rows rows = AllRows(set);
    SortRows(evaluator.guard(), rows,
             [&](uint32_t a, uint32_t b) { return keys.IsBefore(a, b, children_first_); });
    return AtRows(set, rows);
  }

 private:
  bool children_first_;
};

Operand Filter(Call& call) { return std::make_unique<FilteredSet>(call.Set(0), call.Value(1)); }

Operand Order(Call& call) {
  const std::size_t flag = call.Flag(2, {"ASC", "DESC", "BASC", "BDESC"}, 0);
  return std::make_unique<OrderedSet>(call.Set(0), call.Value(1), flag % 2 == 1, flag < 2);
}

template <bool kLargest>
Operand Extreme(Call& call) {
  ValuePtr value = call.ValueOrNone(2);
  return std::make_unique<ExtremeSet>(call.Set(0), call.Value(1), std::move(value), kLargest,
                                      call.place());
}

Operand Hierarchize(Call& call) {
  const bool children_first = call.Flag(1, {"PRE", "POST"}, 0) == 1;
  return std::make_unique<HierarchizedSet>(call.Set(0), children_first);
}

constexpr std::array<Function, 5> kOrderFunctions = {{
    {"Filter", false, "sb", Filter},
    {"Order", false, "sv|f", Order},
    {"TopCount", false, "sn|n", Extreme<true>},
    {"BottomCount", false, "sn|n", Extreme<false>},
    {"Hierarchize", false, "s|f", Hierarchize},
}};

}  // namespace

std::span<const Function> OrderFunctions() { return kOrderFunctions; }

}  // namespace vok::olap
