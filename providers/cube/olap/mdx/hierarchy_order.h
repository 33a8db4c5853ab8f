// All members of a hierarchy, each directly before its children.
#pragma once

#include "providers/cube/olap/mdx/expression.h"

namespace vok::olap {

MemberIds InHierarchyOrder(const CubeView& cube, HierarchyId hierarchy);

}  // namespace vok::olap
