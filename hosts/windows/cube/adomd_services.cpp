#include "hosts/windows/cube/adomd_services.h"

#include "hosts/windows/cube/adomd_cellset.h"
#include "hosts/windows/cube/adomd_connection.h"
#include "hosts/windows/cube/adomd_structure.h"

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
