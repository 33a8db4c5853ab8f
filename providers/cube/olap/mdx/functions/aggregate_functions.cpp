// One value out of the values at many tuples.
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "providers/cube/olap/mdx/basic_expressions.h"
#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/constants.h"
#include "providers/cube/olap/mdx/functions/registry.h"
#include "providers/cube/olap/mdx/merged_cells.h"
#include "providers/cube/olap/mdx/operators.h"

namespace vok::olap {
namespace {

/// Sets of more tuples are taken at once, one cell after the other.
constexpr std::size_t kManyTuples = 64;

enum class Fold { kSum, kAverage, kLeast, kLargest };

/// Values put together, row by row. Empty ones are passed over; of none there is nothing.
class Folded {
 public:
  Folded(Fold fold, std::size_t rows) : fold_(fold), result_(rows), counts_(rows) {}

  /// False where numbers add up to more than the largest one.
  bool Add(std::size_t row, const Column& values, std::size_t from) {
    if (values.states[from] == CellState::kEmpty) return true;
    const double value = values.numbers[from];
    double& total = result_.numbers[row];
    const bool first = counts_[row]++ == 0;
    result_.states[row] = CellState::kNumber;
    switch (fold_) {
      case Fold::kSum:
      case Fold::kAverage:
        return AddTo(total, value);
      case Fold::kLeast:
        total = first ? value : std::min(total, value);
        break;
      case Fold::kLargest:
        total = first ? value : std::max(total, value);
        break;
    }
    return true;
  }

  Column Result() {
    for (std::size_t row = 0; fold_ == Fold::kAverage && row < counts_.size(); ++row) {
      if (counts_[row] > 0) result_.numbers[row] /= static_cast<double>(counts_[row]);
    }
    return std::move(result_);
  }

 private:
  static bool AddTo(double& total, double value) {
    const double before = total;
    total += value;
    return !std::isinf(total) || std::isinf(before) || std::isinf(value);
  }

  Fold fold_;
  Column result_;
  Rows counts_;
};

/// A value of a set. `OverSet` sees a set that is the same for all positions of the block.
class ValueOfSet : public ValueExpression {
 public:
  ValueOfSet(SetPtr set, ValuePtr value, Place place)
      : set_(std::move(set)), value_(std::move(value)), place_(place) {}

  bool DependsOn(HierarchyId hierarchy) const override {
    if (set_->DependsOn(hierarchy)) return true;
    return !Covers(hierarchy) && value_->DependsOn(hierarchy);
  }

  Column Compute(CellEvaluator& evaluator, const Block& block) const override {
    if (block.positions == nullptr) {
      return OverSet(evaluator, block, set_->Evaluate(evaluator, block.context));
    }
    if (set_->DependsOn(block.Varying())) return evaluator.ByPosition(*this, block);
    if (!DependsOn(block.Varying())) return evaluator.OnceForAll(*this, block);
    const TupleSet set = set_->Evaluate(evaluator, block.context);
    if (set.size() > kManyTuples && set.size() > block.size() && !Merges(evaluator, block, set)) {
      return evaluator.ByPosition(*this, block);
    }
    return OverSet(evaluator, block, set);
  }

 protected:
  virtual Column OverSet(CellEvaluator& evaluator, const Block& block,
                         const TupleSet& set) const = 0;
  virtual bool Merges(CellEvaluator&, const Block&, const TupleSet&) const { return false; }

  Column FoldAll(CellEvaluator& evaluator, const Block& block, const TupleSet& set,
                 Fold fold) const {
    if (block.positions == nullptr) return FoldOne(evaluator, block, set, fold);
    Folded folded(fold, evaluator.NewColumn(block).size());
    for (std::size_t i = 0; i < set.size(); ++i) {
      const Column values = evaluator.ValuesAt(*value_, block, set.hierarchies, set.tuple(i));
      RequireNumbers(values, place_);
      for (std::size_t row = 0; row < values.size(); ++row) {
        if (!folded.Add(row, values, row)) FailTooLarge(evaluator, block, row);
      }
    }
    return folded.Result();
  }

  Column FoldOne(CellEvaluator& evaluator, const Block& block, const TupleSet& set,
                 Fold fold) const {
    Folded folded(fold, 1);
    if (evaluator.announcing()) return Column();
    const Column values = evaluator.ValuesOver(*value_, set, block.context);
    RequireNumbers(values, place_);
    for (std::size_t row = 0; row < values.size(); ++row) {
      if (!folded.Add(0, values, row)) FailTooLarge(evaluator, block, 0);
    }
    return folded.Result();
  }

  const ValueExpression& value() const { return *value_; }
  Place place() const { return place_; }

 private:
  [[noreturn]] void FailTooLarge(CellEvaluator& evaluator, const Block& block,
                                 std::size_t row) const {
    evaluator.FailTooLarge("the sum", place_, block, row);
  }
  bool Covers(HierarchyId hierarchy) const {
    const auto& own = set_->hierarchies();
    return std::find(own.begin(), own.end(), hierarchy) != own.end();
  }

  SetPtr set_;
  ValuePtr value_;
  Place place_;
};

class FoldedValue : public ValueOfSet {
 public:
  FoldedValue(Fold fold, SetPtr set, ValuePtr value, Place place)
      : ValueOfSet(std::move(set), std::move(value), place), fold_(fold) {}

 private:
  Column OverSet(CellEvaluator& evaluator, const Block& block, const TupleSet& set) const override {
    return FoldAll(evaluator, block, set, fold_);
  }

  Fold fold_;
};

class Sum : public ValueOfSet {
 public:
  using ValueOfSet::ValueOfSet;

 private:
  bool Merges(CellEvaluator& evaluator, const Block& block, const TupleSet& set) const override {
    return MergedCell(evaluator, block, set, value(), Overlap::kRefused).has_value();
  }
  Column OverSet(CellEvaluator& evaluator, const Block& block, const TupleSet& set) const override {
    if (auto merged = MergedCell(evaluator, block, set, value(), Overlap::kRefused)) {
      return evaluator.Cells(Block{std::move(*merged), block.positions});
    }
    return FoldAll(evaluator, block, set, Fold::kSum);
  }
};

/// Puts values together as their measure does.
class AggregateValue : public ValueOfSet {
 public:
  using ValueOfSet::ValueOfSet;

 private:
  bool Merges(CellEvaluator& evaluator, const Block& block, const TupleSet& set) const override {
    return MergedCell(evaluator, block, set, value(), OverlapFor(evaluator, block)).has_value();
  }
  Column OverSet(CellEvaluator& evaluator, const Block& block, const TupleSet& set) const override {
    if (auto merged = MergedCell(evaluator, block, set, value(), OverlapFor(evaluator, block))) {
      return evaluator.Cells(Block{std::move(*merged), block.positions});
    }
    const Aggregator aggregator = AggregatorOf(evaluator, block);
    if (aggregator == Aggregator::kMin) return FoldAll(evaluator, block, set, Fold::kLeast);
    if (aggregator == Aggregator::kMax) return FoldAll(evaluator, block, set, Fold::kLargest);
    if (aggregator == Aggregator::kDistinctCount && set.size() > 1) {
      if (block.positions != nullptr) return evaluator.ByPosition(*this, block);
      place().Fail(
          "not supported: Aggregate of a distinct count over this set: what its tuples "
          "share would count twice. Give every combination of some stored members.");
    }
    return FoldAll(evaluator, block, set, Fold::kSum);
  }

  Overlap OverlapFor(CellEvaluator& evaluator, const Block& block) const {
    return AddsUp(AggregatorOf(evaluator, block)) ? Overlap::kRefused : Overlap::kOnce;
  }
  /// The cell's measure alone decides, so one member of each hierarchy is enough to find it.
  Aggregator AggregatorOf(CellEvaluator& evaluator, const Block& block) const {
    Context context = block.context;
    std::fill(context.regions.begin(), context.regions.end(), nullptr);
    value().MoveTo(evaluator, Block{context, nullptr}, kNoHierarchy, context);
    const MemberId measure = context.members[kMeasures];
    if (!IsStored(measure)) return Aggregator::kSum;
    return evaluator.cube().model().measures[measure].aggregator;
  }
};

class CountOfSet : public ValueOfSet {
 public:
  CountOfSet(SetPtr set, bool with_empty, Place place)
      : ValueOfSet(std::move(set), with_empty ? NewNumber(0) : NewCellValue({}), place),
        with_empty_(with_empty) {}

 private:
  Column OverSet(CellEvaluator& evaluator, const Block& block, const TupleSet& set) const override {
    Column counts = evaluator.NewColumn(block);
    const auto size = static_cast<double>(set.size());
    for (std::size_t row = 0; row < counts.size(); ++row) {
      counts.SetNumber(row, with_empty_ ? size : 0);
    }
    if (with_empty_) return counts;
    if (block.positions == nullptr) {
      if (evaluator.announcing()) return counts;
      const Column cells = evaluator.ValuesOver(value(), set, block.context);
      for (const CellState state : cells.states) counts.numbers[0] += state != CellState::kEmpty;
      return counts;
    }
    for (std::size_t i = 0; i < set.size(); ++i) {
      const Column cells = evaluator.ValuesAt(value(), block, set.hierarchies, set.tuple(i));
      for (std::size_t row = 0; row < cells.size(); ++row) {
        counts.numbers[row] += cells.states[row] != CellState::kEmpty;
      }
    }
    return counts;
  }

  bool with_empty_;
};

ValuePtr ValueOrCell(Call& call) { return call.Has(1) ? call.Value(1) : NewCellValue({}); }

Operand MakeSum(Call& call) {
  return std::make_unique<Sum>(call.Set(0), ValueOrCell(call), call.place());
}

Operand Aggregate(Call& call) {
  return std::make_unique<AggregateValue>(call.Set(0), ValueOrCell(call), call.place());
}

template <Fold kFold>
Operand MakeFold(Call& call) {
  return std::make_unique<FoldedValue>(kFold, call.Set(0), ValueOrCell(call), call.place());
}

Operand Count(Call& call) {
  const bool with_empty = call.Flag(1, {"INCLUDEEMPTY", "EXCLUDEEMPTY"}, 0) == 0;
  return std::make_unique<CountOfSet>(call.Set(0), with_empty, call.place());
}

constexpr std::array<Function, 7> kAggregateFunctions = {{
    {"Sum", false, "s|n", MakeSum},
    {"Aggregate", false, "s|n", Aggregate},
    {"Avg", false, "s|n", MakeFold<Fold::kAverage>},
    {"Min", false, "s|n", MakeFold<Fold::kLeast>},
    {"Max", false, "s|n", MakeFold<Fold::kLargest>},
    {"Count", false, "s|f", Count},
    {"Count", true, "s", Count},
}};

}  // namespace

std::span<const Function> AggregateFunctions() { return kAggregateFunctions; }

}  // namespace vok::olap
