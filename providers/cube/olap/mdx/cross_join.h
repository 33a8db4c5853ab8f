// All pairs of tuples of two sets.
#pragma once

#include "providers/cube/olap/mdx/expression.h"
#include "providers/cube/olap/mdx/source_text.h"

namespace vok::olap {

/// The first set runs slowest. Failure -2147217900: a hierarchy that is in both, or, on evaluation,
/// more than `kMaxTuples`.
SetPtr NewCrossJoin(SetPtr first, SetPtr second, Place place);

}  // namespace vok::olap
