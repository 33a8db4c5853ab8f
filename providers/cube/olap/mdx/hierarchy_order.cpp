#include "providers/cube/olap/mdx/hierarchy_order.h"

namespace vok::olap {

MemberIds InHierarchyOrder(const CubeView& cube, HierarchyId hierarchy) {
  MemberIds order;
  std::vector<IdRange> open = {cube.LevelMembers(hierarchy, 0)};  // one per level on the way down
  while (!open.empty()) {
    IdRange& rest = open.back();
    if (rest.size() == 0) {
      open.pop_back();
      continue;
    }
    const MemberId member = rest.begin++;
    order.push_back(member);
    const IdRange children = cube.Children(hierarchy, member);
    if (children.size() > 0) open.push_back(children);
  }
  return order;
}

}  // namespace vok::olap
