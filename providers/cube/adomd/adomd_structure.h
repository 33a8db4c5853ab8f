// A catalog's structure through the platform's multidimensional data objects.
//
// Cubes, dimensions, hierarchies and levels are those objects; a level's members are read all at
// once, from the members schema rowset of the connection, when the first of them is asked for.
#pragma once

#include "platform/cube.h"
#include "platform/locale.h"
#include "system/automation/object.h"

namespace vok::windows {

class AdomdCatalog : public CubeCatalog {
 public:
  /// `locale` outlives the catalog and what it hands out.
  AdomdCatalog(const Locale& locale, Object connection);
  std::size_t CubeCount() const override;
  std::unique_ptr<CubeDef> CubeAt(std::size_t index) const override;

 private:
  const Locale& locale_;
  Object catalog_ = Object::Create("ADOMD.Catalog");
  Object connection_;  ///< for the schema rowsets
};

}  // namespace vok::windows
