#include "providers/cube/olap/mdx/whole_number.h"

#include <algorithm>
#include <cmath>

#include "providers/cube/olap/mdx/operators.h"

namespace vok::olap {

int64_t WholeNumber(CellEvaluator& evaluator, const ValueExpression& value, const Context& context,
                    Place place) {
  const Column column = evaluator.Single(value, context);
  RequireNumbers(column, place);
  const double number = column.numbers[0];
  if (std::isnan(number)) return 0;
  constexpr double kLimit = 4294967296.0;
  return static_cast<int64_t>(std::clamp(number, -kLimit, kLimit));
}

}  // namespace vok::olap
