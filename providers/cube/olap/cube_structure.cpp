#include "providers/cube/olap/cube_structure.h"

#include "platform/failure.h"

namespace vok::olap {

std::unique_ptr<CubeDef> OlapCatalog::CubeAt(std::size_t index) const {
  CheckCubeIndex(index, CubeCount(), "The catalog's cube");
  return std::make_unique<OlapCubeDef>(cube_);
}

std::unique_ptr<CubeDimension> OlapCubeDef::DimensionAt(std::size_t index) const {
  CheckCubeIndex(index, DimensionCount(), "The dimension of cube \"" + Name() + "\"");
  return std::make_unique<OlapDimension>(cube_, index);
}

std::unique_ptr<CubeDimension> OlapCubeDef::FindDimension(const std::string& name) const {
  for (std::size_t i = 0; i < DimensionCount(); ++i) {
    auto dimension = DimensionAt(i);
    if (cube_->SameName(dimension->Name(), name)) return dimension;
  }
  return nullptr;
}

std::vector<std::string> OlapCubeDef::CalculatedMembers() const {
  std::vector<std::string> names;
  for (const CalculatedDefinition& member : cube_->model().calculated) {
    names.push_back(member.above + "." + Bracketed(member.name));
  }
  return names;
}

OlapDimension::OlapDimension(std::shared_ptr<const CubeView> cube, std::size_t index)
    : cube_(std::move(cube)) {
  if (index == 0) {
    hierarchies_ = {kMeasures};
    return;
  }
  for (const uint32_t stored : cube_->model().dimensions[index - 1].hierarchies) {
    hierarchies_.push_back(stored + 1);
  }
}

std::unique_ptr<CubeHierarchy> OlapDimension::HierarchyAt(std::size_t index) const {
  CheckCubeIndex(index, HierarchyCount(), "The hierarchy of dimension \"" + Name() + "\"");
  return std::make_unique<OlapHierarchy>(cube_, hierarchies_[index]);
}

std::unique_ptr<CubeLevel> OlapHierarchy::LevelAt(std::size_t index) const {
  CheckCubeIndex(index, LevelCount(), "The level of hierarchy " + UniqueName());
  return std::make_unique<OlapLevel>(cube_, id_, static_cast<uint32_t>(index));
}

LevelTime OlapLevel::Time() const {
  switch (cube_->KindOf(hierarchy_, level_)) {
    case LevelKind::kAll:
    case LevelKind::kRegular:
      return LevelTime::kUntold;
    case LevelKind::kYears:
      return LevelTime::kYears;
    case LevelKind::kMonths:
      return LevelTime::kMonths;
    case LevelKind::kDays:
      return LevelTime::kDays;
    default:
      return LevelTime::kOther;
  }
}

std::size_t OlapLevel::MemberCount() const {
  return Members().size() + (hierarchy_ == kMeasures ? cube_->CalculatedMeasures().size() : 0);
}

std::unique_ptr<CubeMember> OlapLevel::MemberAt(std::size_t index) const {
  CheckCubeIndex(index, MemberCount(), "The member of level " + UniqueName());
  if (index >= Members().size()) {
    const auto& calculated = cube_->CalculatedMeasures();
    return std::make_unique<OlapCalculatedMeasure>(cube_, *calculated[index - Members().size()]);
  }
  return std::make_unique<OlapMember>(cube_, hierarchy_,
                                      Members().begin + static_cast<MemberId>(index));
}

std::unique_ptr<CubeMember> OlapMember::Parent() const {
  const MemberId parent = cube_->Parent(hierarchy_, id_);
  if (parent == kNoMember) return nullptr;
  return std::make_unique<OlapMember>(cube_, hierarchy_, parent);
}

}  // namespace vok::olap
