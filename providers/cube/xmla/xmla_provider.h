// Cube access over servers that speak XML for Analysis 1.1.
//
// A connection's "Data Source" is the server's http or https address. "Initial Catalog" names a
// catalog of the server, or a cube that one of its catalogs holds; names without regard to case.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/cube.h"
#include "platform/locale.h"
#include "providers/cube/xmla/server.h"

namespace vok::xmla {

class XmlaCubeProvider : public CubeProvider {
 public:
  /// What `access` holds is called for each connection. `locale` outlives the provider, and this
  /// all that it hands out.
  XmlaCubeProvider(const Locale& locale, ServerAccess access)
      : locale_(locale), access_(std::move(access)) {}

  /// The text's "Timeout" stands in for the setting `TotalSeconds`, its "Max Cells" for
  /// `kMaxCells`. Failures: 3706 for another provider; -2147467259 for a text that names no server,
  /// a catalog or cube that the server does not have or has several times; and those of `Server`.
  std::unique_ptr<CubeConnection> Connect(const std::string& text, const QueryStop* stop) override;

 private:
  const Locale& locale_;
  ServerAccess access_;
};

}  // namespace vok::xmla
