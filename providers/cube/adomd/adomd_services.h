// The platform's own cube access: ADO and ADO MD over MSOLAP.
#pragma once

#include <memory>

#include "platform/cube.h"
#include "platform/locale.h"

namespace vok::windows {

class AdomdCubeServices : public CubeServices {
 public:
  /// `locale` outlives this and all that it makes.
  explicit AdomdCubeServices(const Locale& locale) : locale_(locale) {}
  std::unique_ptr<CubeConnection> NewConnection() override;
  std::unique_ptr<CubeCatalog> NewCatalog() override;
  std::unique_ptr<Cellset> NewCellset() override;

 private:
  const Locale& locale_;
};

}  // namespace vok::windows
