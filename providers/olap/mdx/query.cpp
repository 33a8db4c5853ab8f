#include "providers/olap/mdx/query.h"

namespace vok::olap {

std::optional<std::string> FormatOf(const CubeView& cube, const Query& query, MemberId measure) {
  if (measure == kNoMember) return std::nullopt;
  if (IsCalculated(measure)) return query.Member(measure).format;
  const std::string& format = cube.model().measures[measure].format_string;
  return format.empty() ? std::nullopt : std::optional(format);
}

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
