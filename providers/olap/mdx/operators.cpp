#include "providers/olap/mdx/operators.h"

#include <limits>
#include <utility>

#include "platform/failure.h"
#include "providers/olap/mdx/evaluator.h"

namespace vok::olap {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Which empty operands leave the result empty.
enum class Empties { kBoth, kEither, kLeft, kNever };

struct Operator {
  std::string_view symbol;
  ValueKind kind;
  Empties empties;
  double (*compute)(double left, double right);
};

double Flag(bool value) { return value ? 1 : 0; }

constexpr Operator kOperators[] = {
    {"+", ValueKind::kNumber, Empties::kBoth, [](double a, double b) { return a + b; }},
    {"-", ValueKind::kNumber, Empties::kBoth, [](double a, double b) { return a - b; }},
    {"*", ValueKind::kNumber, Empties::kEither, [](double a, double b) { return a * b; }},
    {"/", ValueKind::kNumber, Empties::kLeft, [](double a, double b) { return a / b; }},
    {"=", ValueKind::kLogical, Empties::kEither, [](double a, double b) { return Flag(a == b); }},
    {"<>", ValueKind::kLogical, Empties::kEither, [](double a, double b) { return Flag(a != b); }},
    {"<", ValueKind::kLogical, Empties::kEither, [](double a, double b) { return Flag(a < b); }},
    {"<=", ValueKind::kLogical, Empties::kEither, [](double a, double b) { return Flag(a <= b); }},
    {">", ValueKind::kLogical, Empties::kEither, [](double a, double b) { return Flag(a > b); }},
    {">=", ValueKind::kLogical, Empties::kEither, [](double a, double b) { return Flag(a >= b); }},
    {"AND", ValueKind::kLogical, Empties::kNever,
     [](double a, double b) { return Flag(a != 0 && b != 0); }},
    {"OR", ValueKind::kLogical, Empties::kNever,
     [](double a, double b) { return Flag(a != 0 || b != 0); }},
    {"XOR", ValueKind::kLogical, Empties::kNever,
     [](double a, double b) { return Flag((a != 0) != (b != 0)); }},
};

const Operator* Find(std::string_view symbol) {
  for (const Operator& candidate : kOperators) {
    if (candidate.symbol == symbol) return &candidate;
  }
  return nullptr;
}

class BinaryValue : public ValueExpression {
 public:
  BinaryValue(const Operator& by, ValuePtr left, ValuePtr right)
      : ValueExpression(by.kind), by_(by), left_(std::move(left)), right_(std::move(right)) {}

  bool DependsOn(HierarchyId hierarchy) const override {
    return left_->DependsOn(hierarchy) || right_->DependsOn(hierarchy);
  }

  Column Evaluate(Evaluator& evaluator, const Block& block) const override {
    Column left = left_->Evaluate(evaluator, block);
    const Column right = right_->Evaluate(evaluator, block);
    RequireNumbers(left);
    RequireNumbers(right);
    for (std::size_t row = 0; row < left.size(); ++row) {
      Combine(left, right, row);
    }
    return left;
  }

 private:
  void Combine(Column& left, const Column& right, std::size_t row) const {
    const bool no_left = left.states[row] == CellState::kEmpty;
    const bool no_right = right.states[row] == CellState::kEmpty;
    if (LeavesEmpty(no_left, no_right)) {
      left.numbers[row] = 0;
      left.states[row] = CellState::kEmpty;
    } else if (by_.empties == Empties::kLeft && no_right) {
      left.SetNumber(row, kInfinity);
    } else {
      left.SetNumber(row, by_.compute(left.numbers[row], right.numbers[row]));
    }
  }

  bool LeavesEmpty(bool no_left, bool no_right) const {
    switch (by_.empties) {
      case Empties::kBoth:
        return no_left && no_right;
      case Empties::kEither:
        return no_left || no_right;
      case Empties::kLeft:
        return no_left;
      case Empties::kNever:
        return false;
    }
    return false;
  }

  const Operator& by_;
  ValuePtr left_;
  ValuePtr right_;
};

class UnaryValue : public ValueExpression {
 public:
  UnaryValue(ValuePtr operand, bool negates_logic)
      : ValueExpression(negates_logic ? ValueKind::kLogical : ValueKind::kNumber),
        operand_(std::move(operand)),
        negates_logic_(negates_logic) {}

  bool DependsOn(HierarchyId hierarchy) const override { return operand_->DependsOn(hierarchy); }

  Column Evaluate(Evaluator& evaluator, const Block& block) const override {
    Column column = operand_->Evaluate(evaluator, block);
    RequireNumbers(column);
    for (std::size_t row = 0; row < column.size(); ++row) {
      if (negates_logic_) {
        column.SetNumber(row, Flag(column.numbers[row] == 0));
      } else if (column.states[row] == CellState::kNumber) {
        column.numbers[row] = -column.numbers[row];
      }
    }
    return column;
  }

 private:
  ValuePtr operand_;
  bool negates_logic_;
};

}  // namespace

void RequireNumbers(const Column& column) {
  for (std::size_t row = 0; row < column.texts.size(); ++row) {
    if (column.states[row] == CellState::kText) {
      throw Failure(failure_number::kSyntax,
                    "MDX: the text \"" + column.texts[row] + "\" stands where a number is needed.");
    }
  }
}

ValuePtr NewBinary(std::string_view symbol, ValuePtr left, ValuePtr right) {
  const Operator* found = Find(symbol);
  if (found == nullptr) return nullptr;
  return std::make_unique<BinaryValue>(*found, std::move(left), std::move(right));
}

bool IsLogical(std::string_view symbol) {
  const Operator* found = Find(symbol);
  return symbol == "NOT" || (found != nullptr && found->empties == Empties::kNever);
}

ValuePtr NewUnary(std::string_view symbol, ValuePtr operand) {
  return std::make_unique<UnaryValue>(std::move(operand), symbol == "NOT");
}

}  // namespace vok::olap
