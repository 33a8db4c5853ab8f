#include "providers/cube/olap/mdx/constants.h"

#include <utility>

#include "providers/cube/olap/mdx/cell_evaluator.h"

namespace vok::olap {
namespace {

/// `put(column, row)` puts the value into one cell.
template <typename Put>
class Constant : public ValueExpression {
 public:
  Constant(ValueKind kind, Put put) : ValueExpression(kind), put_(std::move(put)) {}
  bool DependsOn(HierarchyId) const override { return false; }
  Column Compute(CellEvaluator& evaluator, const Block& block) const override {
    Column column = evaluator.NewColumn(block);
    for (std::size_t row = 0; row < column.size(); ++row) {
      evaluator.guard().CheckAt(row);
      put_(column, row);
    }
    return column;
  }

 private:
  Put put_;
};

template <typename Put>
ValuePtr NewConstant(ValueKind kind, Put put) {
  return std::make_unique<Constant<Put>>(kind, std::move(put));
}

}  // namespace

ValuePtr NewNumber(double number) {
  return NewConstant(ValueKind::kNumber,
                     [number](Column& column, std::size_t row) { column.SetNumber(row, number); });
}

ValuePtr NewText(std::string text) {
  return NewConstant(ValueKind::kText, [text = std::move(text)](Column& column, std::size_t row) {
    column.SetText(row, text);
  });
}

ValuePtr NewLogical(bool value) {
  return NewConstant(ValueKind::kLogical,
                     [value](Column& column, std::size_t row) { column.SetLogical(row, value); });
}

ValuePtr NewNothing() {
  return NewConstant(ValueKind::kNumber, [](Column&, std::size_t) {});
}

}  // namespace vok::olap
