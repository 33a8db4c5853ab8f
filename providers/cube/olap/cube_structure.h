// A catalog's structure: its cube with dimensions, hierarchies, levels and members. Each object
// keeps the cube alive by itself. Failure 3265 for an index beyond the end.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/cube.h"
#include "providers/cube/olap/mdx/cube_view.h"

namespace vok::olap {

class OlapCatalog : public CubeCatalog {
 public:
  /// nullptr: a catalog without a cube.
  explicit OlapCatalog(std::shared_ptr<const CubeView> cube) : cube_(std::move(cube)) {}
  std::size_t CubeCount() const override { return cube_ == nullptr ? 0 : 1; }
  std::unique_ptr<CubeDef> CubeAt(std::size_t index) const override;

 private:
  std::shared_ptr<const CubeView> cube_;
};

class OlapCubeDef : public CubeDef {
 public:
  explicit OlapCubeDef(std::shared_ptr<const CubeView> cube) : cube_(std::move(cube)) {}
  std::string Name() const override { return cube_->model().name; }
  std::size_t DimensionCount() const override { return cube_->model().dimensions.size() + 1; }
  std::unique_ptr<CubeDimension> DimensionAt(std::size_t index) const override;
  std::unique_ptr<CubeDimension> FindDimension(const std::string& name) const override;
  std::optional<uint64_t> FactCount() const override { return cube_->model().fact_count; }
  std::vector<std::string> CalculatedMembers() const override;

 private:
  std::shared_ptr<const CubeView> cube_;
};

class OlapDimension : public CubeDimension {
 public:
  /// 0: the measures.
  OlapDimension(std::shared_ptr<const CubeView> cube, std::size_t index);
  std::string Name() const override { return cube_->DimensionName(hierarchies_.front()); }
  std::string UniqueName() const override { return Bracketed(Name()); }
  std::size_t HierarchyCount() const override { return hierarchies_.size(); }
  std::unique_ptr<CubeHierarchy> HierarchyAt(std::size_t index) const override;

 private:
  std::shared_ptr<const CubeView> cube_;
  std::vector<HierarchyId> hierarchies_;
};

class OlapHierarchy : public CubeHierarchy {
 public:
  OlapHierarchy(std::shared_ptr<const CubeView> cube, HierarchyId id)
      : cube_(std::move(cube)), id_(id) {}
  std::string Name() const override { return cube_->HierarchyName(id_); }
  std::string UniqueName() const override { return cube_->HierarchyUniqueName(id_); }
  std::size_t LevelCount() const override { return cube_->LevelCount(id_); }
  std::unique_ptr<CubeLevel> LevelAt(std::size_t index) const override;

 private:
  std::shared_ptr<const CubeView> cube_;
  HierarchyId id_;
};

class OlapLevel : public CubeLevel {
 public:
  OlapLevel(std::shared_ptr<const CubeView> cube, HierarchyId hierarchy, uint32_t level)
      : cube_(std::move(cube)), hierarchy_(hierarchy), level_(level) {}
  std::string Name() const override { return cube_->LevelName(hierarchy_, level_); }
  std::string UniqueName() const override { return cube_->LevelUniqueName(hierarchy_, level_); }
  bool IsAll() const override { return cube_->KindOf(hierarchy_, level_) == LevelKind::kAll; }
  LevelTime Time() const override;
  /// With the measures that the cube computes, after the stored ones.
  std::size_t MemberCount() const override;
  std::unique_ptr<CubeMember> MemberAt(std::size_t index) const override;

 private:
  IdRange Members() const { return cube_->LevelMembers(hierarchy_, level_); }

  std::shared_ptr<const CubeView> cube_;
  HierarchyId hierarchy_;
  uint32_t level_;
};

class OlapMember : public CubeMember {
 public:
  OlapMember(std::shared_ptr<const CubeView> cube, HierarchyId hierarchy, MemberId id)
      : cube_(std::move(cube)), hierarchy_(hierarchy), id_(id) {}
  std::string Name() const override { return cube_->MemberName(hierarchy_, id_); }
  std::string Caption() const override { return cube_->Caption(hierarchy_, id_); }
  std::string UniqueName() const override { return cube_->UniqueName(hierarchy_, id_); }
  std::string FormatString() const override {
    const bool is_stored_measure = hierarchy_ == kMeasures && id_ < cube_->model().measures.size();
    return is_stored_measure ? cube_->model().measures[id_].format_string : std::string();
  }
  std::unique_ptr<CubeMember> Parent() const override;

 private:
  std::shared_ptr<const CubeView> cube_;
  HierarchyId hierarchy_;
  MemberId id_;
};

class OlapCalculatedMeasure : public CubeMember {
 public:
  OlapCalculatedMeasure(std::shared_ptr<const CubeView> cube,
                        const CalculatedDefinition& definition)
      : cube_(std::move(cube)), definition_(definition) {}
  std::string Name() const override { return definition_.name; }
  std::string Caption() const override { return definition_.caption; }
  std::string UniqueName() const override {
    return cube_->HierarchyUniqueName(kMeasures) + "." + Bracketed(definition_.name);
  }
  std::unique_ptr<CubeMember> Parent() const override { return nullptr; }
  bool IsCalculated() const override { return true; }
  std::string FormatString() const override { return definition_.format_string; }

 private:
  std::shared_ptr<const CubeView> cube_;
  const CalculatedDefinition& definition_;
};

}  // namespace vok::olap
