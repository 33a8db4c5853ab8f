// Cubes on Windows, of all kinds behind one port.
//
// Each connection decides when it is opened (cube_choice.h). Catalogs and cellsets go the way of
// their connection.
#pragma once

#include <memory>

#include "hosts/windows/cube/cube_choice.h"
#include "platform/cube.h"
#include "platform/locale.h"

namespace vok::windows {

/// The platform's own cube access: ADO and ADO MD over MSOLAP.
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

class ChosenCubeServices : public CubeServices {
 public:
  /// All outlive this and all that it makes.
  ChosenCubeServices(const Files& files, const Locale& locale, CubeServices& portable)
      : platform_(locale), choice_(files, portable, platform_) {}
  std::unique_ptr<CubeConnection> NewConnection() override;
  std::unique_ptr<CubeCatalog> NewCatalog() override;
  std::unique_ptr<Cellset> NewCellset() override;

 private:
  AdomdCubeServices platform_;
  CubeChoice choice_;
};

}  // namespace vok::windows
