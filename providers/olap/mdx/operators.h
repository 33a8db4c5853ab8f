// Arithmetic, comparison and logic. An empty operand counts as 0 in a sum, makes a product empty,
// and makes a comparison false; a quotient is empty when its dividend is, and infinite when only
// its divisor is.
#pragma once

#include <string_view>

#include "providers/olap/mdx/expression.h"

namespace vok::olap {

/// Failure -2147217900 when the column holds a text.
void RequireNumbers(const Column& column);

/// "+", "-", "*", "/", "=", "<>", "<", "<=", ">", ">=", "AND", "OR", "XOR"; nullptr for another.
ValuePtr NewBinary(std::string_view symbol, ValuePtr left, ValuePtr right);
/// Whether the operator takes and gives conditions.
bool IsLogical(std::string_view symbol);
/// "-" or "NOT"; an empty operand stays empty under "-".
ValuePtr NewUnary(std::string_view symbol, ValuePtr operand);

}  // namespace vok::olap
