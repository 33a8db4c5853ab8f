// From the text of a query to its syntax tree.
#pragma once

#include "providers/cube/olap/mdx/source_text.h"
#include "providers/cube/olap/mdx/syntax.h"

namespace vok::olap {

/// How deep parentheses, braces and calls may nest, and how deep a tree may grow: it is walked by
/// recursion.
inline constexpr uint32_t kMaxNesting = 100;
inline constexpr uint32_t kMaxTreeDepth = 500;

/// Failure -2147217900 with line and column: what was expected and what stood there.
Statement Parse(const SourceText& source);

}  // namespace vok::olap
