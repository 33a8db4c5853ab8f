// The platform's own cube access: ADO and ADO MD over MSOLAP.
#pragma once

#include <memory>
#include <string>

#include "platform/cube.h"
#include "platform/locale.h"

namespace vok::windows {

class AdomdCubeProvider : public CubeProvider {
 public:
  /// `locale` outlives this and all that it makes.
  explicit AdomdCubeProvider(const Locale& locale) : locale_(locale) {}
  /// Failures are those of the data objects. A query that runs in them cannot be stopped.
  std::unique_ptr<CubeConnection> Connect(const std::string& text, const QueryStop* stop) override;

 private:
  const Locale& locale_;
};

}  // namespace vok::windows
