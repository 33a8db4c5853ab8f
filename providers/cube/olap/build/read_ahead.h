// Reading a table on a thread of its own, while the rows before are worked on.
#pragma once

#include <memory>

#include "providers/cube/olap/build/table_source.h"

namespace vok::olap {

/// The same rows in the same order, some thousands of them ahead. A failure of `reader` comes when
/// all rows before it were taken.
std::unique_ptr<TableReader> ReadAhead(std::unique_ptr<TableReader> reader);

}  // namespace vok::olap
