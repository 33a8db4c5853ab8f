// Facts of one cube in an opened file.
#pragma once

#include <memory>
#include <optional>

#include "providers/cube/olap/storage/blocks.h"
#include "providers/cube/olap/storage/bytes.h"
#include "providers/cube/olap/storage/fact_store.h"

namespace vok::olap {

/// `blocks` outlives the result. `aggregates` is the section of stored aggregates, where there is
/// one; queries use them by themselves. Failure "damaged" when a section does not fit the
/// hierarchies and measures of the model.
std::unique_ptr<FactStore> ReadFactsSection(BlockStore& blocks, ByteReader section,
                                            const std::optional<ByteReader>& aggregates,
                                            const CubeModel& model);

}  // namespace vok::olap
