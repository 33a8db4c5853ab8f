#include "providers/cube/olap/mdx/name_resolver.h"

#include <utility>

#include "providers/cube/olap/mdx/basic_expressions.h"
#include "providers/cube/olap/mdx/functions/registry.h"

namespace vok::olap {
namespace {

std::string PathText(std::span<const NamePart> path) {
  return ToText(Name(path.begin(), path.end()));
}

}  // namespace

NameResolver::NameResolver(const CubeView& cube, const SourceText& source, const Query& query)
    : cube_(cube), source_(source), query_(query) {}

Operand NameResolver::Resolve(Path path) const {
  if (auto set = FindSet(path)) return std::move(*set);
  for (HierarchyId h = 0; h < cube_.HierarchyCount(); ++h) {
    const bool first = h == 0 || cube_.DimensionName(h) != cube_.DimensionName(h - 1);
    if (!first || !cube_.SameName(cube_.DimensionName(h), path[0].text)) continue;
    if (auto found = FindInDimension(path, h)) return std::move(*found);
  }
  if (auto found = FindHierarchyAlone(path)) return std::move(*found);
  FailUnknown(path);
}

std::optional<Operand> NameResolver::FindSet(Path path) const {
  if (path.size() != 1) return std::nullopt;
  for (const std::size_t index : query_.SetsNamed(cube_, path[0].text)) {
    const NamedSet& set = query_.sets[index];
    if (set.set != nullptr) return NewNamedSet(index, *set.set);
  }
  return std::nullopt;
}

std::optional<Operand> NameResolver::FindInDimension(Path path, HierarchyId first) const {
  const std::string dimension = cube_.DimensionName(first);
  std::vector<HierarchyId> hierarchies;
  for (HierarchyId h = first; h < cube_.HierarchyCount() && cube_.DimensionName(h) == dimension;
       ++h) {
    hierarchies.push_back(h);
  }
  if (path.size() > 1) {
    for (const HierarchyId h : hierarchies) {
      if (!cube_.SameName(cube_.HierarchyName(h), path[1].text)) continue;
      if (auto found = InHierarchy(h, path.subspan(2))) return found;
    }
  }
  for (const HierarchyId h : hierarchies) {
    if (auto found = InHierarchy(h, path.subspan(1))) return found;
  }
  return std::nullopt;
}

std::optional<Operand> NameResolver::FindHierarchyAlone(Path path) const {
  for (HierarchyId h = 0; h < cube_.HierarchyCount(); ++h) {
    const std::string joined = cube_.DimensionName(h) + "." + cube_.HierarchyName(h);
    if (cube_.SameName(cube_.HierarchyName(h), path[0].text) ||
        cube_.SameName(joined, path[0].text)) {
      if (auto found = InHierarchy(h, path.subspan(1))) return found;
    }
  }
  return std::nullopt;
}

std::optional<Operand> NameResolver::InHierarchy(HierarchyId hierarchy, Path rest) const {
  if (rest.empty()) return HierarchyOperand{hierarchy};
  const MemberId calculated = FindCalculated(hierarchy, kNoMember, rest[0].text);
  if (calculated != kNoMember) return BelowMember(hierarchy, calculated, rest.subspan(1));
  for (uint32_t level = 0; level < cube_.LevelCount(hierarchy); ++level) {
    if (!cube_.SameName(cube_.LevelName(hierarchy, level), rest[0].text)) continue;
    if (auto found = InLevel(hierarchy, level, rest.subspan(1))) return found;
  }
  const MemberId member = FindMember(hierarchy, rest[0]);
  if (member == kNoMember) return std::nullopt;
  return BelowMember(hierarchy, member, rest.subspan(1));
}

std::optional<Operand> NameResolver::InLevel(HierarchyId hierarchy, uint32_t level,
                                             Path rest) const {
  if (rest.empty()) return LevelOperand{hierarchy, level};
  const MemberId member =
      OnlyOne(cube_.FindInLevel(hierarchy, level, rest[0].text), hierarchy, rest[0]);
  if (member == kNoMember) return std::nullopt;
  return BelowMember(hierarchy, member, rest.subspan(1));
}

std::optional<Operand> NameResolver::BelowMember(HierarchyId hierarchy, MemberId member,
                                                 Path rest) const {
  for (const NamePart& part : rest) {
    if (IsCalculated(member)) return std::nullopt;
    const MemberId calculated = FindCalculated(hierarchy, member, part.text);
    if (calculated != kNoMember) {
      member = calculated;
      continue;
    }
    member = OnlyOne(cube_.FindChildren(hierarchy, member, part.text), hierarchy, part);
    if (member == kNoMember) return std::nullopt;
  }
  return NewConstantMember(hierarchy, member);
}

/// From the top; below the all member; anywhere further down.
MemberId NameResolver::FindMember(HierarchyId hierarchy, const NamePart& part) const {
  for (uint32_t level = 0; level < cube_.LevelCount(hierarchy); ++level) {
    const std::vector<MemberId> found = cube_.FindInLevel(hierarchy, level, part.text);
    if (!found.empty()) return OnlyOne(found, hierarchy, part);
  }
  return kNoMember;
}

MemberId NameResolver::FindCalculated(HierarchyId hierarchy, MemberId parent,
                                      std::string_view name) const {
  if (parent != kNoMember && cube_.HasAll(hierarchy) && parent == cube_.DefaultMember(hierarchy)) {
    parent = kNoMember;
  }
  MemberId declared = kNoMember;
  for (const std::size_t index : query_.MembersNamed(cube_, name)) {
    const CalculatedMember& member = query_.members[index];
    if (member.hierarchy != hierarchy || member.parent != parent) continue;
    const MemberId found = static_cast<MemberId>(index) | kCalculatedBit;
    if (!member.is_declared) return found;
    declared = found;
  }
  return declared;
}

MemberId NameResolver::OnlyOne(const std::vector<MemberId>& found, HierarchyId hierarchy,
                               const NamePart& part) const {
  if (found.empty()) return kNoMember;
  if (found.size() > 1) {
    const bool case_differs =
        cube_.Parent(hierarchy, found[0]) == cube_.Parent(hierarchy, found[1]);
    source_.Fail(part.offset,
                 Bracketed(part.text) + " names " + std::to_string(found.size()) +
                     " members, such as " + cube_.UniqueName(hierarchy, found[0]) + " and " +
                     cube_.UniqueName(hierarchy, found[1]) + ": " +
                     (case_differs ? "give capitals as they are there" : "give the whole path"));
  }
  return found[0];
}

void NameResolver::FailUnknown(Path path) const {
  std::string what = "\"" + PathText(path) + "\" is not in cube \"" + cube_.model().name + "\"";
  const NamePart& last = path.back();
  if (path.size() > 1 && !last.bracketed) what += "; not supported: " + last.text;
  source_.Fail(path[0].offset, what);
}

std::optional<CalculatedMember> NameResolver::Declare(const Name& name, bool declared) const {
  const NamePart& last = name.back();
  if (name.size() < 2) {
    source_.Fail(last.offset, "the calculated member " + Bracketed(last.text) +
                                  " needs its hierarchy, such as [Measures]." +
                                  Bracketed(last.text));
  }
  Operand above = Resolve(Path(name).first(name.size() - 1));
  CalculatedMember member;
  member.name = member.caption = last.text;
  member.is_declared = declared;
  member.place = {&source_, last.offset};
  if (const auto* hierarchy = std::get_if<HierarchyOperand>(&above)) {
    member.hierarchy = hierarchy->hierarchy;
  } else if (const auto* parent = std::get_if<MemberPtr>(&above)) {
    member.hierarchy = (*parent)->hierarchy();
    member.parent = ConstantMemberOf(**parent);
    if (!IsStored(member.parent)) {
      source_.Fail(last.offset, "a calculated member cannot stand below a calculated member");
    }
    if (cube_.HasAll(member.hierarchy) && member.parent == cube_.DefaultMember(member.hierarchy)) {
      member.parent = kNoMember;
    }
  } else {
    source_.Fail(last.offset, "a calculated member stands in a hierarchy or below a member, not " +
                                  Describe(above));
  }
  const MemberId same = FindCalculated(member.hierarchy, member.parent, member.name);
  if (same != kNoMember && query_.Member(same).is_declared == declared) {
    return std::nullopt;
  }
  const std::string parent_name = member.parent == kNoMember
                                      ? cube_.HierarchyUniqueName(member.hierarchy)
                                      : cube_.UniqueName(member.hierarchy, member.parent);
  member.unique_name = parent_name + "." + Bracketed(member.name);
  return member;
}

}  // namespace vok::olap
