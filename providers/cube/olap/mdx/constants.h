// Values that a query writes out.
#pragma once

#include <string>

#include "providers/cube/olap/mdx/expression.h"

namespace vok::olap {

ValuePtr NewNumber(double number);
ValuePtr NewText(std::string text);
ValuePtr NewLogical(bool value);
/// An empty value.
ValuePtr NewNothing();

}  // namespace vok::olap
