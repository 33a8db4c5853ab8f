// Arithmetic, comparison and logic. An empty operand counts as 0 in a sum, makes a product empty,
// and makes a comparison false; a quotient is empty when its dividend is, and infinite when only
// its divisor is.
#pragma once

#include <string_view>

#include "providers/cube/olap/mdx/operand.h"
#include "providers/cube/olap/mdx/source_text.h"

namespace vok::olap {

/// Failure -2147217900, at `place`, when the column holds a text.
void RequireNumbers(const Column& column, Place place);

/// "+", "-", "*", "/", "=", "<>", "<", "<=", ">", ">=", "AND", "OR", "XOR", "||"; nullptr for
/// another. Two texts are compared byte by byte.
ValuePtr NewBinary(std::string_view symbol, ValuePtr left, ValuePtr right, Place place);
/// What the operands of the operator must be.
ArgumentType OperandOf(std::string_view symbol);
/// "-" or "NOT"; an empty operand stays empty under "-".
ValuePtr NewUnary(std::string_view symbol, ValuePtr operand, Place place);

}  // namespace vok::olap
