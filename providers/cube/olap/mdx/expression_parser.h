// The expressions of a query: sets, tuples, members, values.
#pragma once

#include "providers/cube/olap/mdx/syntax.h"
#include "providers/cube/olap/mdx/token_reader.h"

namespace vok::olap {

/// Reads one expression from `tokens` and leaves them after it.
Syntax ParseExpression(TokenReader& tokens);
/// A formula: an expression, or one in single quotes.
Syntax ParseFormula(TokenReader& tokens);

}  // namespace vok::olap
