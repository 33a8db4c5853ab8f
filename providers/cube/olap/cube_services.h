// Cube access over cube files: connections, structure and queries in the platform's words.
//
// A connection's "Data Source" is the path of a cube file, relative to the current directory. Each
// cube of the file is a catalog; without "Initial Catalog" the first one is the default, and
// queries may name any.
#pragma once

#include <memory>

#include "platform/cube.h"
#include "platform/files.h"
#include "platform/locale.h"

namespace vok::olap {

/// Files and locale must outlive the services and all that they hand out.
class OlapCubeServices : public CubeServices {
 public:
  OlapCubeServices(const Files& files, const Locale& locale) : files_(files), locale_(locale) {}

  std::unique_ptr<CubeConnection> NewConnection() override;
  std::unique_ptr<CubeCatalog> NewCatalog() override;
  std::unique_ptr<Cellset> NewCellset() override;

 private:
  const Files& files_;
  const Locale& locale_;
};

}  // namespace vok::olap
