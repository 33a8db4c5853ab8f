// Leaves of a live cube as conditions on the keys of its facts.
#pragma once

#include <span>
#include <vector>

#include "platform/table_question.h"
#include "providers/cube/olap/storage/live_source.h"

namespace vok::olap {

/// What the keys of facts in these leaves meet, and no others: whole numbers that follow each other
/// become a range, so that servers see which partitions and parts of an index they need. Ranges of
/// leaves are ascending and do not overlap.
KeyCondition ConditionOf(const LiveKeys& hierarchy, std::span<const IdRange> leaves);

}  // namespace vok::olap
