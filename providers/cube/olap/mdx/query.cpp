#include "providers/cube/olap/mdx/query.h"

#include <utility>

namespace vok::olap {
namespace {

const Query::Indexes& Find(const std::unordered_map<std::string, Query::Indexes>& index,
                           const std::string& folded) {
  static const Query::Indexes none;
  const auto found = index.find(folded);
  return found == index.end() ? none : found->second;
}

}  // namespace

std::size_t Query::Add(const CubeView& cube, CalculatedMember member) {
  member_index_[cube.Folded(member.name)].push_back(members.size());
  members.push_back(std::move(member));
  return members.size() - 1;
}

std::size_t Query::Add(const CubeView& cube, NamedSet set) {
  set_index_[cube.Folded(set.name)].push_back(sets.size());
  sets.push_back(std::move(set));
  return sets.size() - 1;
}

const Query::Indexes& Query::MembersNamed(const CubeView& cube, std::string_view name) const {
  return Find(member_index_, cube.Folded(name));
}

const Query::Indexes& Query::SetsNamed(const CubeView& cube, std::string_view name) const {
  return Find(set_index_, cube.Folded(name));
}

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
