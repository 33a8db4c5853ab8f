#include "providers/cube/olap/mdx/cube_view.h"

#include <algorithm>
#include <functional>
#include <optional>

namespace vok::olap {
namespace {

constexpr char kMeasuresName[] = "Measures";
constexpr char kMeasuresLevel[] = "MeasuresLevel";
/// So few members are compared one by one.
constexpr uint32_t kFewMembers = 32;

}  // namespace

CubeView::CubeView(std::shared_ptr<const StoredCube> cube, const Locale& locale,
                   std::shared_ptr<const FactStore> live)
    : cube_(std::move(cube)), live_(std::move(live)), locale_(locale), indexes_(HierarchyCount()) {
  for (const CalculatedDefinition& member : model().calculated) {
    if (!member.is_visible || !SameName(member.above, HierarchyUniqueName(kMeasures))) continue;
    calculated_measures_.push_back(&member);
  }
  for (HierarchyId h = 0; h < HierarchyCount(); ++h) {
    for (uint32_t level = 0; level < LevelCount(h); ++level) {
      indexes_[h].push_back(std::make_unique<NameIndex>());
    }
  }
}

bool CubeView::SameName(std::string_view a, std::string_view b) const {
  return EqualNoCase(locale_, a, b);
}

HierarchyId CubeView::HierarchyCount() const {
  return static_cast<HierarchyId>(model().hierarchies.size()) + 1;
}

std::string CubeView::DimensionName(HierarchyId hierarchy) const {
  return hierarchy == kMeasures ? kMeasuresName : Stored(hierarchy).dimension_name();
}

std::string CubeView::HierarchyName(HierarchyId hierarchy) const {
  return hierarchy == kMeasures ? kMeasuresName : Stored(hierarchy).name();
}

std::string CubeView::HierarchyUniqueName(HierarchyId hierarchy) const {
  return hierarchy == kMeasures ? Bracketed(kMeasuresName) : Stored(hierarchy).unique_name();
}

uint32_t CubeView::LevelCount(HierarchyId hierarchy) const {
  return hierarchy == kMeasures ? 1 : static_cast<uint32_t>(Stored(hierarchy).levels().size());
}

std::string CubeView::LevelName(HierarchyId hierarchy, uint32_t level) const {
  return hierarchy == kMeasures ? kMeasuresLevel : Stored(hierarchy).levels()[level].name;
}

std::string CubeView::LevelUniqueName(HierarchyId hierarchy, uint32_t level) const {
  if (hierarchy != kMeasures) return Stored(hierarchy).LevelUniqueName(level);
  return Bracketed(kMeasuresName) + "." + Bracketed(kMeasuresLevel);
}

IdRange CubeView::LevelMembers(HierarchyId hierarchy, uint32_t level) const {
  if (hierarchy == kMeasures) return {0, static_cast<uint32_t>(model().measures.size())};
  return Stored(hierarchy).levels()[level].members;
}

uint32_t CubeView::LevelOf(HierarchyId hierarchy, MemberId member) const {
  return hierarchy == kMeasures ? 0 : static_cast<uint32_t>(Stored(hierarchy).LevelOf(member));
}

std::string CubeView::MemberName(HierarchyId hierarchy, MemberId member) const {
  if (hierarchy == kMeasures) return model().measures[member].name;
  return Stored(hierarchy).Name(member);
}

std::string CubeView::Caption(HierarchyId hierarchy, MemberId member) const {
  if (hierarchy != kMeasures) return Stored(hierarchy).Caption(member);
  const Measure& measure = model().measures[member];
  return measure.caption.empty() ? measure.name : measure.caption;
}

std::string CubeView::UniqueName(HierarchyId hierarchy, MemberId member) const {
  if (hierarchy == kMeasures) return model().measures[member].UniqueName();
  return Stored(hierarchy).UniqueName(member);
}

MemberId CubeView::Parent(HierarchyId hierarchy, MemberId member) const {
  return hierarchy == kMeasures ? kNoMember : Stored(hierarchy).Parent(member);
}

IdRange CubeView::Children(HierarchyId hierarchy, MemberId member) const {
  return hierarchy == kMeasures ? IdRange{} : Stored(hierarchy).Children(member);
}

MemberId CubeView::DefaultMember(HierarchyId hierarchy) const {
  return hierarchy == kMeasures ? model().default_measure : Stored(hierarchy).DefaultMember();
}

bool CubeView::HasAll(HierarchyId hierarchy) const {
  return hierarchy != kMeasures && Stored(hierarchy).has_all();
}

HierarchyId CubeView::TimeHierarchy() const {
  for (const Dimension& dimension : model().dimensions) {
    if (dimension.is_time) return dimension.hierarchies.front() + 1;
  }
  return kNoHierarchy;
}

std::vector<MemberId> CubeView::FindChildren(HierarchyId hierarchy, MemberId parent,
                                             std::string_view name) const {
  return BestNamed(hierarchy, Children(hierarchy, parent), name);
}

std::vector<MemberId> CubeView::FindInLevel(HierarchyId hierarchy, uint32_t level,
                                            std::string_view name) const {
  return BestNamed(hierarchy, LevelMembers(hierarchy, level), name);
}

uint64_t CubeView::NameHash(std::string_view name) const {
  return std::hash<std::string>()(Folded(name));
}

const CubeView::NameIndex& CubeView::Index(HierarchyId hierarchy, uint32_t level) const {
  NameIndex& index = *indexes_[hierarchy][level];
  std::call_once(index.made, [&] {
    const IdRange members = LevelMembers(hierarchy, level);
    index.entries.reserve(members.size());
    std::optional<TextReader> names;
    if (hierarchy != kMeasures) names = Stored(hierarchy).Names();
    for (MemberId m = members.begin; m < members.end; ++m) {
      index.entries.emplace_back(NameHash(names ? (*names)[m] : model().measures[m].name), m);
    }
    std::sort(index.entries.begin(), index.entries.end());
  });
  return index;
}

std::vector<MemberId> CubeView::BestNamed(HierarchyId hierarchy, IdRange among,
                                          std::string_view name) const {
  std::vector<MemberId> found = Find(hierarchy, among, name);
  const auto others = std::stable_partition(found.begin(), found.end(), [&](MemberId member) {
    return MemberName(hierarchy, member) == name;
  });
  if (others != found.begin()) found.erase(others, found.end());
  return found;
}

std::vector<MemberId> CubeView::Find(HierarchyId hierarchy, IdRange among,
                                     std::string_view name) const {
  std::vector<MemberId> found;
  const auto add_if_named = [&](MemberId member) {
    if (SameName(MemberName(hierarchy, member), name)) found.push_back(member);
  };
  if (among.size() <= kFewMembers) {
    for (MemberId m = among.begin; m < among.end; ++m) add_if_named(m);
    return found;
  }
  const auto& entries = Index(hierarchy, LevelOf(hierarchy, among.begin)).entries;
  const uint64_t hash = NameHash(name);
  auto entry = std::lower_bound(entries.begin(), entries.end(), std::pair{hash, among.begin});
  for (; entry != entries.end() && entry->first == hash && entry->second < among.end; ++entry) {
    add_if_named(entry->second);
  }
  return found;
}

}  // namespace vok::olap
