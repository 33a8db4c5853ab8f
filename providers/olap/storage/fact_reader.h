// Facts of one cube in an opened file.
#pragma once

#include <memory>
#include <vector>

#include "providers/olap/storage/blocks.h"
#include "providers/olap/storage/bytes.h"
#include "providers/olap/storage/fact_store.h"

namespace vok::olap {

/// `blocks` outlives the result. Failure "damaged" when the section does not fit the hierarchies
/// and measures of the model.
std::unique_ptr<FactStore> ReadFactsSection(const BlockStore& blocks, ByteReader section,
                                            const CubeModel& model);

}  // namespace vok::olap
