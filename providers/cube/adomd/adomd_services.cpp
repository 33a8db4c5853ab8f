#include "providers/cube/adomd/adomd_services.h"

#include "providers/cube/adomd/adomd_cellset.h"
#include "providers/cube/adomd/adomd_connection.h"
#include "providers/cube/adomd/adomd_structure.h"

namespace vok::windows {

std::unique_ptr<CubeConnection> AdomdCubeServices::NewConnection() {
  return std::make_unique<AdomdConnection>();
}

std::unique_ptr<CubeCatalog> AdomdCubeServices::NewCatalog() {
  return std::make_unique<AdomdCatalog>(locale_);
}

std::unique_ptr<Cellset> AdomdCubeServices::NewCellset() {
  return std::make_unique<AdomdCellset>();
}

}  // namespace vok::windows
