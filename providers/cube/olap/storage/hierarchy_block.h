// The block that holds a hierarchy's members: written from a list, read in pages.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "providers/cube/olap/storage/blocks.h"
#include "providers/cube/olap/storage/cube_writer.h"
#include "providers/cube/olap/storage/model.h"

namespace vok::olap {

std::string HierarchyBlock(const NewHierarchy& hierarchy);

struct StoredMembers {
  LeafLevels leaf_levels;
  std::shared_ptr<const MemberTexts> texts;
};
/// The members of a block that fits `levels`, every text and every reference in it checked. Failure
/// "damaged".
StoredMembers ReadHierarchyBlock(const BlockStore& blocks, uint32_t block,
                                 const std::vector<Level>& levels);

}  // namespace vok::olap
