// All members of a hierarchy, each directly before its children.
#pragma once

#include <vector>

#include "providers/olap/mdx/cube_view.h"

namespace vok::olap {

std::vector<MemberId> InHierarchyOrder(const CubeView& cube, HierarchyId hierarchy);

}  // namespace vok::olap
