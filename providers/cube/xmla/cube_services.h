// Cube access over servers that speak XML for Analysis 1.1: connections, structure and queries in
// the platform's words.
//
// A connection's "Data Source" is the server's http or https address. "Initial Catalog" names a
// catalog of the server, or a cube that one of its catalogs holds; names without regard to case.
#pragma once

#include <memory>

#include "platform/cube.h"
#include "platform/locale.h"
#include "providers/cube/xmla/server.h"

namespace vok::xmla {

class XmlaCubeServices : public CubeServices {
 public:
  /// What `access` holds is called at each opening of a connection. `locale` must outlive the
  /// services, and these all that they hand out.
  XmlaCubeServices(const Locale& locale, ServerAccess access)
      : locale_(locale), access_(std::move(access)) {}

  std::unique_ptr<CubeConnection> NewConnection() override;
  std::unique_ptr<CubeCatalog> NewCatalog() override;
  std::unique_ptr<Cellset> NewCellset() override;

 private:
  const Locale& locale_;
  ServerAccess access_;
};

}  // namespace vok::xmla
