#include "providers/cube/xmla/cube_structure.h"

#include <algorithm>

#include "platform/failure.h"

namespace vok::xmla {

XmlaCatalog::XmlaCatalog(const Locale& locale, const std::shared_ptr<Server>& server,
                         const std::string& catalog, const std::string& cube)
    : locale_(locale) {
  auto names = ListCubes(*server, catalog);
  std::stable_partition(names.begin(), names.end(),
                        [&](const std::string& name) { return EqualNoCase(locale_, name, cube); });
  for (std::string& name : names) {
    cubes_.push_back(std::make_shared<ServerCube>(server, catalog, std::move(name)));
  }
}

std::unique_ptr<CubeDef> XmlaCatalog::CubeAt(std::size_t index) const {
  CheckCubeIndex(index, CubeCount(), "The catalog's cube");
  return std::make_unique<XmlaCubeDef>(cubes_[index], locale_);
}

std::unique_ptr<CubeDimension> XmlaCubeDef::DimensionAt(std::size_t index) const {
  CheckCubeIndex(index, DimensionCount(), "The dimension of cube \"" + Name() + "\"");
  return std::make_unique<XmlaDimension>(cube_, cube_->Dimensions()[index]);
}

std::unique_ptr<CubeDimension> XmlaCubeDef::FindDimension(const std::string& name) const {
  for (DimensionNode& node : cube_->Dimensions()) {
    if (EqualNoCase(locale_, node.name, name)) return std::make_unique<XmlaDimension>(cube_, node);
  }
  return nullptr;
}

std::unique_ptr<CubeHierarchy> XmlaDimension::HierarchyAt(std::size_t index) const {
  CheckCubeIndex(index, HierarchyCount(), "The hierarchy of dimension \"" + Name() + "\"");
  return std::make_unique<XmlaHierarchy>(cube_, cube_->Hierarchies(node_)[index]);
}

std::unique_ptr<CubeLevel> XmlaHierarchy::LevelAt(std::size_t index) const {
  CheckCubeIndex(index, LevelCount(), "The level of hierarchy " + UniqueName());
  return std::make_unique<XmlaLevel>(cube_, node_, index);
}

std::unique_ptr<CubeMember> XmlaLevel::MemberAt(std::size_t index) const {
  CheckCubeIndex(index, MemberCount(), "The member of level " + UniqueName());
  return std::make_unique<XmlaMember>(cube_, hierarchy_, level_, index);
}

/// Where a hierarchy skips levels, the parent stands more than one above.
std::unique_ptr<CubeMember> XmlaMember::Parent() const {
  const std::string_view parent = Row().parent;
  if (parent.empty()) return nullptr;
  for (std::size_t above = level_; above-- > 0;) {
    const MemberList& members = cube_->Members((*hierarchy_.levels)[above]);
    const std::size_t found = members.Find(parent);
    if (found < members.size()) {
      return std::make_unique<XmlaMember>(cube_, hierarchy_, above, found);
    }
  }
  return nullptr;
}

}  // namespace vok::xmla
