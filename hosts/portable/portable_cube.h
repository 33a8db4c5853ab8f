// Cubes of both kinds behind one port: a connection text whose "Data Source" is an http or https
// address goes to a cube server, any other to a cube file.
#pragma once

#include <memory>

#include "platform/cube.h"

namespace vok::portable {

/// The services of both kinds are the caller's and outlive this object and all that it hands out.
class PortableCubeServices : public CubeServices {
 public:
  PortableCubeServices(CubeServices& files, CubeServices& servers)
      : files_(files), servers_(servers) {}

  std::unique_ptr<CubeConnection> NewConnection() override;
  std::unique_ptr<CubeCatalog> NewCatalog() override;
  std::unique_ptr<Cellset> NewCellset() override;

 private:
  CubeServices& files_;
  CubeServices& servers_;
};

}  // namespace vok::portable
