// Numbers that count something.
#pragma once

#include <cstdint>

#include "providers/cube/olap/mdx/cell_evaluator.h"

namespace vok::olap {

/// The value at `context`, without its fraction; an empty value is 0. Beyond what any set can hold
/// it is cut off. Failure -2147217900 for a text, at `place`.
int64_t WholeNumber(CellEvaluator& evaluator, const ValueExpression& value, const Context& context,
                    Place place);

}  // namespace vok::olap
