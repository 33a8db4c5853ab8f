#include "providers/cube/olap/mdx/operators.h"

#include <cmath>
#include <limits>
#include <utility>

#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/number_format.h"

namespace vok::olap {
namespace {

constexpr std::string_view kJoin = "||";
constexpr std::string_view kNot = "NOT";
/// No text put together is longer, in bytes.
constexpr std::size_t kMaxTextLength = 32767;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Which empty operands leave the result empty.
enum class Empties { kBoth, kEither, kLeft, kNever };

struct Operator {
  std::string_view symbol;
  ValueKind kind;
  Empties empties;
  double (*compute)(double left, double right);
  bool compares = false;
  bool is_bounded = false;  ///< numbers never give an infinity
};

double Flag(bool value) { return value ? 1 : 0; }

constexpr Operator kOperators[] = {
    {"+", ValueKind::kNumber, Empties::kBoth, [](double a, double b) { return a + b; }, false,
     true},
    {"-", ValueKind::kNumber, Empties::kBoth, [](double a, double b) { return a - b; }, false,
     true},
    {"*", ValueKind::kNumber, Empties::kEither, [](double a, double b) { return a * b; }, false,
     true},
    {"/", ValueKind::kNumber, Empties::kLeft, [](double a, double b) { return a / b; }},
    {"=", ValueKind::kLogical, Empties::kEither, [](double a, double b) { return Flag(a == b); },
     true},
    {"<>", ValueKind::kLogical, Empties::kEither, [](double a, double b) { return Flag(a != b); },
     true},
    {"<", ValueKind::kLogical, Empties::kEither, [](double a, double b) { return Flag(a < b); },
     true},
    {"<=", ValueKind::kLogical, Empties::kEither, [](double a, double b) { return Flag(a <= b); },
     true},
    {">", ValueKind::kLogical, Empties::kEither, [](double a, double b) { return Flag(a > b); },
     true},
    {">=", ValueKind::kLogical, Empties::kEither, [](double a, double b) { return Flag(a >= b); },
     true},
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

/// Takes over a result in the state that its kind has.
void Put(Column& column, std::size_t row, ValueKind kind, double result) {
  column.numbers[row] = result;
  column.states[row] = kind == ValueKind::kLogical ? CellState::kLogical : CellState::kNumber;
}

class BinaryValue : public ValueExpression {
 public:
  BinaryValue(const Operator& by, ValuePtr left, ValuePtr right, Place place)
      : ValueExpression(by.kind),
        by_(by),
        left_(std::move(left)),
        right_(std::move(right)),
        place_(place) {}

  bool DependsOn(HierarchyId hierarchy) const override {
    return left_->DependsOn(hierarchy) || right_->DependsOn(hierarchy);
  }

  Column Compute(CellEvaluator& evaluator, const Block& block) const override {
    Column left = left_->Evaluate(evaluator, block);
    Column right = right_->Evaluate(evaluator, block);
    if (by_.compares) CompareTexts(left, right);
    RequireNumbers(left, place_);
    RequireNumbers(right, place_);
    for (std::size_t row = 0; row < left.size(); ++row) {
      const double operand = left.numbers[row];
      Combine(left, right, row);
      if (std::isinf(left.numbers[row]) && by_.is_bounded && std::isfinite(operand) &&
          std::isfinite(right.numbers[row])) {
        evaluator.FailTooLarge("the result", place_, block, row);
      }
    }
    return left;
  }

 private:
  /// Two texts become the numbers that compare as they do.
  static void CompareTexts(Column& left, Column& right) {
    if (left.texts.empty() && right.texts.empty()) return;
    for (std::size_t row = 0; row < left.size(); ++row) {
      const CellState a = left.states[row];
      const CellState b = right.states[row];
      if (a == CellState::kText && b == CellState::kText) {
        left.SetNumber(row, left.texts[row].compare(right.texts[row]));
        right.SetNumber(row, 0);
      } else if (a == CellState::kEmpty || b == CellState::kEmpty) {
        left.states[row] = right.states[row] = CellState::kEmpty;
      }
    }
  }

  void Combine(Column& left, const Column& right, std::size_t row) const {
    const bool no_left = left.states[row] == CellState::kEmpty;
    const bool no_right = right.states[row] == CellState::kEmpty;
    if (LeavesEmpty(no_left, no_right)) {
      const bool compares = by_.kind == ValueKind::kLogical;
      left.numbers[row] = 0;
      left.states[row] = compares ? CellState::kLogical : CellState::kEmpty;
    } else if (by_.empties == Empties::kLeft && no_right) {
      left.SetNumber(row, kInfinity);
    } else {
      Put(left, row, by_.kind, by_.compute(left.numbers[row], right.numbers[row]));
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
  Place place_;
};

std::string TextOf(const Column& column, std::size_t row) {
  const CellState state = column.states[row];
  if (state == CellState::kEmpty) return {};
  if (state == CellState::kText) return column.texts[row];
  if (state == CellState::kLogical) return column.numbers[row] != 0 ? "true" : "false";
  return FormatNumber(column.numbers[row], "");
}

class JoinedTexts : public ValueExpression {
 public:
  JoinedTexts(ValuePtr left, ValuePtr right, Place place)
      : ValueExpression(ValueKind::kText),
        left_(std::move(left)),
        right_(std::move(right)),
        place_(place) {}
  bool DependsOn(HierarchyId hierarchy) const override {
    return left_->DependsOn(hierarchy) || right_->DependsOn(hierarchy);
  }
  Column Compute(CellEvaluator& evaluator, const Block& block) const override {
    const Column left = left_->Evaluate(evaluator, block);
    const Column right = right_->Evaluate(evaluator, block);
    Column joined = evaluator.NewColumn(block);
    for (std::size_t row = 0; row < joined.size(); ++row) {
      evaluator.guard().CheckAt(row);
      std::string text = TextOf(left, row) + TextOf(right, row);
      if (text.size() > kMaxTextLength) {
        place_.Fail("the text has " + std::to_string(text.size()) + " bytes; the limit is " +
                    std::to_string(kMaxTextLength));
      }
      joined.SetText(row, std::move(text));
    }
    return joined;
  }

 private:
  ValuePtr left_;
  ValuePtr right_;
  Place place_;
};

class UnaryValue : public ValueExpression {
 public:
  UnaryValue(ValuePtr operand, bool negates_logic, Place place)
      : ValueExpression(negates_logic ? ValueKind::kLogical : ValueKind::kNumber),
        operand_(std::move(operand)),
        negates_logic_(negates_logic),
        place_(place) {}

  bool DependsOn(HierarchyId hierarchy) const override { return operand_->DependsOn(hierarchy); }

  Column Compute(CellEvaluator& evaluator, const Block& block) const override {
    Column column = operand_->Evaluate(evaluator, block);
    RequireNumbers(column, place_);
    for (std::size_t row = 0; row < column.size(); ++row) {
      if (negates_logic_) {
        column.SetLogical(row, column.numbers[row] == 0);
      } else if (column.states[row] != CellState::kEmpty) {
        column.SetNumber(row, -column.numbers[row]);
      }
    }
    return column;
  }

 private:
  ValuePtr operand_;
  bool negates_logic_;
  Place place_;
};

}  // namespace

void RequireNumbers(const Column& column, Place place) {
  for (std::size_t row = 0; row < column.texts.size(); ++row) {
    if (column.states[row] == CellState::kText) {
      place.Fail("the text \"" + column.texts[row] + "\" is where a number is needed");
    }
  }
}

ValuePtr NewBinary(std::string_view symbol, ValuePtr left, ValuePtr right, Place place) {
  if (symbol == kJoin)
    return std::make_unique<JoinedTexts>(std::move(left), std::move(right), place);
  const Operator* found = Find(symbol);
  if (found == nullptr) return nullptr;
  return std::make_unique<BinaryValue>(*found, std::move(left), std::move(right), place);
}

ArgumentType OperandOf(std::string_view symbol) {
  if (symbol == kJoin) return ArgumentType::kValue;
  const Operator* found = Find(symbol);
  if (found != nullptr && found->compares) return ArgumentType::kValue;
  const bool logical = symbol == kNot || (found != nullptr && found->kind == ValueKind::kLogical);
  return logical ? ArgumentType::kCondition : ArgumentType::kNumber;
}

ValuePtr NewUnary(std::string_view symbol, ValuePtr operand, Place place) {
  return std::make_unique<UnaryValue>(std::move(operand), symbol == kNot, place);
}

}  // namespace vok::olap
