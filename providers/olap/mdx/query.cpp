#include "providers/olap/mdx/query.h"

namespace vok::olap {

HierarchyId DecidingHierarchy(const Query& query, const std::vector<MemberId>& members) {
  HierarchyId deciding = kNoHierarchy;
  for (HierarchyId h = 0; h < members.size(); ++h) {
    if (!IsCalculated(members[h])) continue;
    if (deciding == kNoHierarchy ||
        query.Member(members[h]).solve_order > query.Member(members[deciding]).solve_order) {
      deciding = h;
    }
  }
  return deciding;
}

}  // namespace vok::olap
