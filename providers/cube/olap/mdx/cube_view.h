// A cube as a query sees it: "Measures" is its first hierarchy, with the measures as members of one
// level; the model's hierarchies follow. Names are found without regard to case.
//
// Safe to read from several threads; the indexes of names are made when first asked for.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/locale.h"
#include "providers/cube/olap/storage/cube_file.h"

namespace vok::olap {

/// 0: the measures; n + 1: hierarchy n of the model.
using HierarchyId = uint32_t;
inline constexpr HierarchyId kMeasures = 0;
inline constexpr HierarchyId kNoHierarchy = 0xFFFFFFFF;

class CubeView {
 public:
  /// Keeps `cube` alive; `locale` must outlive the view. `live`: the facts of a live cube.
  CubeView(std::shared_ptr<const StoredCube> cube, const Locale& locale,
           std::shared_ptr<const FactStore> live = nullptr);

  const CubeModel& model() const { return cube_->model; }
  const FactStore& facts() const { return live_ != nullptr ? *live_ : *cube_->facts; }
  bool SameName(std::string_view a, std::string_view b) const;
  /// The same text for names that are the same.
  std::string Folded(std::string_view name) const { return locale_.FoldCase(name); }

  HierarchyId HierarchyCount() const;
  /// Hierarchies of one dimension follow each other.
  std::string DimensionName(HierarchyId hierarchy) const;
  std::string HierarchyName(HierarchyId hierarchy) const;
  std::string HierarchyUniqueName(HierarchyId hierarchy) const;

  uint32_t LevelCount(HierarchyId hierarchy) const;
  std::string LevelName(HierarchyId hierarchy, uint32_t level) const;
  std::string LevelUniqueName(HierarchyId hierarchy, uint32_t level) const;
  IdRange LevelMembers(HierarchyId hierarchy, uint32_t level) const;

  uint32_t LevelOf(HierarchyId hierarchy, MemberId member) const;
  std::string MemberName(HierarchyId hierarchy, MemberId member) const;
  std::string Caption(HierarchyId hierarchy, MemberId member) const;
  std::string UniqueName(HierarchyId hierarchy, MemberId member) const;
  MemberId Parent(HierarchyId hierarchy, MemberId member) const;
  IdRange Children(HierarchyId hierarchy, MemberId member) const;
  MemberId DefaultMember(HierarchyId hierarchy) const;
  bool HasAll(HierarchyId hierarchy) const;
  /// Measures that the cube declares by formulas, those that are listed.
  const std::vector<const CalculatedDefinition*>& CalculatedMeasures() const {
    return calculated_measures_;
  }
  /// The first hierarchy of the first time dimension; `kNoHierarchy` without one.
  HierarchyId TimeHierarchy() const;
  LevelKind KindOf(HierarchyId hierarchy, uint32_t level) const {
    return hierarchy == kMeasures ? LevelKind::kRegular : Stored(hierarchy).levels()[level].kind;
  }
  /// Of a hierarchy of the model.
  const Hierarchy& Stored(HierarchyId hierarchy) const {
    return model().hierarchies[hierarchy - 1];
  }

  /// Members of this name among the children of `parent`, or in a level; in the cube's order. Where
  /// some have exactly this name, these alone.
  std::vector<MemberId> FindChildren(HierarchyId hierarchy, MemberId parent,
                                     std::string_view name) const;
  std::vector<MemberId> FindInLevel(HierarchyId hierarchy, uint32_t level,
                                    std::string_view name) const;

 private:
  struct NameIndex {
    std::once_flag made;
    std::vector<std::pair<uint64_t, MemberId>>
        entries;  ///< hash of the folded name, member; sorted
  };

  uint64_t NameHash(std::string_view name) const;
  const NameIndex& Index(HierarchyId hierarchy, uint32_t level) const;
  std::vector<MemberId> BestNamed(HierarchyId hierarchy, IdRange among,
                                  std::string_view name) const;
  /// Without regard to case.
  std::vector<MemberId> Find(HierarchyId hierarchy, IdRange among, std::string_view name) const;

  std::shared_ptr<const StoredCube> cube_;
  std::shared_ptr<const FactStore> live_;
  const Locale& locale_;
  std::vector<const CalculatedDefinition*> calculated_measures_;
  mutable std::vector<std::vector<std::unique_ptr<NameIndex>>> indexes_;
};

}  // namespace vok::olap
