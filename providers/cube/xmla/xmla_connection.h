// A connection to a cube server.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/connection_text.h"
#include "platform/cube.h"
#include "platform/locale.h"
#include "platform/published.h"
#include "providers/cube/xmla/server.h"

namespace vok::xmla {

/// What a connection and all that was asked of it share.
struct OpenedServer {
  std::shared_ptr<Server> server;
  std::vector<std::string> catalogs;
  std::string catalog;  ///< the one in use
  std::string cube;     ///< the cube that the connection text named; "": none
  std::size_t max_cells = kMaxCells;
};

/// The text's "Timeout" stands in for the setting `TotalSeconds`, its "Max Cells" for `kMaxCells`.
/// Failures of `Open`: 3706 for
/// another provider; -2147467259 for a text that names no server, a catalog or cube that the server
/// has not or has several times, and those of `Server`. Asking a closed connection: 3704.
class XmlaConnection : public CubeConnection {
 public:
  XmlaConnection(const Locale& locale, const ServerAccess& access)
      : locale_(locale), access_(access) {}

  std::string ConnectionString() const override { return text_; }
  void SetConnectionString(const std::string& text) override { text_ = text; }
  /// Every cursor is on this side.
  void SetCursorLocation(CursorLocation) override {}
  /// The user and the password are those of the settings.
  void Open(const std::string& connection_string, const std::string& user,
            const std::string& password, int32_t options) override;
  void Close() override;
  void Cancel() override {
    asked_.Use([](Server& server) { server.Cancel(); });
  }
  std::string DefaultDatabase() const override { return opened()->catalog; }
  std::vector<std::string> CatalogNames() const override { return opened()->catalogs; }

  std::shared_ptr<const OpenedServer> opened() const;
  const Locale& locale() const { return locale_; }

  /// Failure 3704 for a connection of other services.
  static const XmlaConnection& From(const CubeConnection& connection);

 private:
  HttpSettings Settings(const cube_text::ConnectionText& parts) const;
  void UseCatalog(OpenedServer& opened, const std::string& name) const;
  std::string CatalogOfCube(OpenedServer& opened, const std::string& cube) const;

  const Locale& locale_;
  const ServerAccess& access_;
  std::string text_;
  std::shared_ptr<const OpenedServer> opened_;
  std::shared_ptr<Server> server_;  ///< also while it is being opened
  Published<Server> asked_;         ///< the same
};

}  // namespace vok::xmla
