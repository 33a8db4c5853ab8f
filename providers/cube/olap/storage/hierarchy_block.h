// The block that holds a hierarchy's members: written from a list, read in place.
#pragma once

#include <string>
#include <vector>

#include "providers/cube/olap/storage/blocks.h"
#include "providers/cube/olap/storage/cube_writer.h"
#include "providers/cube/olap/storage/model.h"

namespace vok::olap {

std::string HierarchyBlock(const NewHierarchy& hierarchy);

/// The columns in place, every reference in them checked. Failure "damaged".
MemberColumns ReadHierarchyBlock(BlockStore& blocks, uint32_t block,
                                 const std::vector<Level>& levels);

}  // namespace vok::olap
