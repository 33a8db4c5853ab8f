// Numbers from numbers.
#include <array>
#include <cmath>
#include <utility>

#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/constants.h"
#include "providers/cube/olap/mdx/functions/registry.h"
#include "providers/cube/olap/mdx/operators.h"

namespace vok::olap {
namespace {

/// From here on doubles have no places after the point.
constexpr double kWhole = 4503599627370496.0;

/// Halves go up, as a cube server rounds.
double Rounded(double number, double places) {
  const double factor = std::pow(10.0, std::trunc(places));
  const double scaled = number * factor;
  if (!(std::abs(scaled) < kWhole) || factor == 0) return number;
  return std::floor(scaled + 0.5) / factor;
}

double Absolute(double number, double) { return std::abs(number); }

/// A number computed from one or two others; empty where the first one is.
class ComputedNumber : public ValueExpression {
 public:
  using Formula = double (*)(double first, double second);

  ComputedNumber(Formula compute, ValuePtr first, ValuePtr second, Place place)
      : compute_(compute), first_(std::move(first)), second_(std::move(second)), place_(place) {}

  bool DependsOn(HierarchyId hierarchy) const override {
    return first_->DependsOn(hierarchy) || second_->DependsOn(hierarchy);
  }
  Column Compute(CellEvaluator& evaluator, const Block& block) const override {
    Column result = first_->Evaluate(evaluator, block);
    const Column second = second_->Evaluate(evaluator, block);
    RequireNumbers(result, place_);
    RequireNumbers(second, place_);
    for (std::size_t row = 0; row < result.size(); ++row) {
      if (result.states[row] == CellState::kEmpty) continue;
      result.SetNumber(row, compute_(result.numbers[row], second.numbers[row]));
    }
    return result;
  }

 private:
  Formula compute_;
  ValuePtr first_;
  ValuePtr second_;
  Place place_;
};

template <ComputedNumber::Formula kCompute>
Operand Computed(Call& call) {
  ValuePtr second = call.Has(1) ? call.Value(1) : NewNumber(0);
  return std::make_unique<ComputedNumber>(kCompute, call.Value(0), std::move(second), call.place());
}

constexpr std::array<Function, 2> kNumberFunctions = {{
    {"Abs", false, "n", Computed<Absolute>},
    {"Round", false, "n|n", Computed<Rounded>},
}};

}  // namespace

std::span<const Function> NumberFunctions() { return kNumberFunctions; }

}  // namespace vok::olap
