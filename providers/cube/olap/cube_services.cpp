#include "providers/cube/olap/cube_services.h"

#include "providers/cube/olap/cube_structure.h"
#include "providers/cube/olap/olap_cellset.h"
#include "providers/cube/olap/olap_connection.h"

namespace vok::olap {

std::unique_ptr<CubeConnection> OlapCubeServices::NewConnection() {
  return std::make_unique<OlapConnection>(files_, locale_);
}

std::unique_ptr<CubeCatalog> OlapCubeServices::NewCatalog() {
  return std::make_unique<OlapCatalog>();
}

std::unique_ptr<Cellset> OlapCubeServices::NewCellset() { return std::make_unique<OlapCellset>(); }

}  // namespace vok::olap
