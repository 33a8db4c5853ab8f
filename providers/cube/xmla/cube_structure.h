// A catalog's structure: its cubes with dimensions, hierarchies, levels and members. Each object
// keeps what it shows alive by itself. Failures: 3265 for an index beyond the end, and those of
// `Server::Discover`, since the server is asked when something is first looked at.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/cube.h"
#include "platform/locale.h"
#include "providers/cube/xmla/server_cube.h"

namespace vok::xmla {

class XmlaCatalog : public CubeCatalog {
 public:
  /// Lists the catalog's cubes; one of the name `cube` comes first.
  XmlaCatalog(const Locale& locale, const std::shared_ptr<Server>& server,
              const std::string& catalog, const std::string& cube);
  std::size_t CubeCount() const override { return cubes_.size(); }
  std::unique_ptr<CubeDef> CubeAt(std::size_t index) const override;

 private:
  const Locale& locale_;
  std::vector<std::shared_ptr<ServerCube>> cubes_;
};

class XmlaCubeDef : public CubeDef {
 public:
  XmlaCubeDef(std::shared_ptr<ServerCube> cube, const Locale& locale)
      : cube_(std::move(cube)), locale_(locale) {}
  std::string Name() const override { return cube_->name(); }
  std::size_t DimensionCount() const override { return cube_->Dimensions().size(); }
  std::unique_ptr<CubeDimension> DimensionAt(std::size_t index) const override;
  std::unique_ptr<CubeDimension> FindDimension(const std::string& name) const override;

 private:
  std::shared_ptr<ServerCube> cube_;
  const Locale& locale_;
};

class XmlaDimension : public CubeDimension {
 public:
  XmlaDimension(std::shared_ptr<ServerCube> cube, DimensionNode& node)
      : cube_(std::move(cube)), node_(node) {}
  std::string Name() const override { return node_.name; }
  std::string UniqueName() const override { return node_.unique_name; }
  std::size_t HierarchyCount() const override { return cube_->Hierarchies(node_).size(); }
  std::unique_ptr<CubeHierarchy> HierarchyAt(std::size_t index) const override;

 private:
  std::shared_ptr<ServerCube> cube_;
  DimensionNode& node_;
};

class XmlaHierarchy : public CubeHierarchy {
 public:
  XmlaHierarchy(std::shared_ptr<ServerCube> cube, HierarchyNode& node)
      : cube_(std::move(cube)), node_(node) {}
  std::string Name() const override { return node_.name; }
  std::string UniqueName() const override { return node_.unique_name; }
  std::size_t LevelCount() const override { return cube_->Levels(node_).size(); }
  std::unique_ptr<CubeLevel> LevelAt(std::size_t index) const override;

 private:
  std::shared_ptr<ServerCube> cube_;
  HierarchyNode& node_;
};

class XmlaLevel : public CubeLevel {
 public:
  XmlaLevel(std::shared_ptr<ServerCube> cube, HierarchyNode& hierarchy, std::size_t level)
      : cube_(std::move(cube)), hierarchy_(hierarchy), level_(level) {}
  std::string Name() const override { return Node().name; }
  std::string UniqueName() const override { return Node().unique_name; }
  bool IsAll() const override { return Node().is_all; }
  LevelTime Time() const override { return Node().time; }
  std::size_t MemberCount() const override { return cube_->Members(Node()).size(); }
  std::unique_ptr<CubeMember> MemberAt(std::size_t index) const override;

 private:
  LevelNode& Node() const { return (*hierarchy_.levels)[level_]; }

  std::shared_ptr<ServerCube> cube_;
  HierarchyNode& hierarchy_;
  std::size_t level_;
};

class XmlaMember : public CubeMember {
 public:
  /// The level's members are there already.
  XmlaMember(std::shared_ptr<ServerCube> cube, HierarchyNode& hierarchy, std::size_t level,
             std::size_t index)
      : cube_(std::move(cube)), hierarchy_(hierarchy), level_(level), index_(index) {}
  std::string Name() const override { return std::string(Row().name); }
  std::string Caption() const override { return std::string(Row().caption); }
  std::string UniqueName() const override { return std::string(Row().unique_name); }
  std::unique_ptr<CubeMember> Parent() const override;

 private:
  const MemberList::Member& Row() const { return (*(*hierarchy_.levels)[level_].members)[index_]; }

  std::shared_ptr<ServerCube> cube_;
  HierarchyNode& hierarchy_;
  std::size_t level_;
  std::size_t index_;
};

}  // namespace vok::xmla
