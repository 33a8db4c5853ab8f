#include "providers/cube/xmla/cube_services.h"

#include "providers/cube/xmla/cube_structure.h"
#include "providers/cube/xmla/xmla_cellset.h"
#include "providers/cube/xmla/xmla_connection.h"

namespace vok::xmla {

std::unique_ptr<CubeConnection> XmlaCubeServices::NewConnection() {
  return std::make_unique<XmlaConnection>(locale_, access_);
}

std::unique_ptr<CubeCatalog> XmlaCubeServices::NewCatalog() {
  return std::make_unique<XmlaCatalog>();
}

std::unique_ptr<Cellset> XmlaCubeServices::NewCellset() { return std::make_unique<XmlaCellset>(); }

}  // namespace vok::xmla
