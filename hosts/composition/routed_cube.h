// Cubes of several kinds behind one port. Who serves a connection is chosen by its text when it is
// opened; catalogs and cellsets go the way of their connection.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/cube.h"

namespace vok {

/// Gives the services for a connection text; its failures are those of opening. What it gives
/// outlives the routed services and all that they hand out.
using ChooseCubeServices = std::function<CubeServices&(const std::string& connection_text)>;

/// Outlives all that it hands out.
class RoutedCubeServices : public CubeServices {
 public:
  explicit RoutedCubeServices(ChooseCubeServices choose) : choose_(std::move(choose)) {}

  std::unique_ptr<CubeConnection> NewConnection() override;
  std::unique_ptr<CubeCatalog> NewCatalog() override;
  std::unique_ptr<Cellset> NewCellset() override;

 private:
  ChooseCubeServices choose_;
};

}  // namespace vok
