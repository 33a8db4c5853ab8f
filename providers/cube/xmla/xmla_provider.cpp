#include "providers/cube/xmla/xmla_provider.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/connection_text.h"
#include "platform/failure.h"
#include "platform/shown_text.h"
#include "providers/cube/xmla/cube_structure.h"

namespace vok::xmla {
namespace {

constexpr char kProvider[] = "MSOLAP";
constexpr std::size_t kNamesShown = 20;
constexpr double kLargestTimeout = 7 * 24 * 3600;  // seconds

cube_text::ConnectionText ReadText(const Locale& locale, const std::string& text) {
  cube_text::ConnectionText parts = cube_text::ParseConnectionText(text);
  if (!parts.provider.empty() && !EqualNoCase(locale, parts.provider, kProvider)) {
    throw Failure(
        failure_number::kProviderNotFound,
        "The provider \"" + parts.provider + "\" is not for cubes; use " + kProvider + ".");
  }
  if (!cube_text::NamesServer(parts)) {
    throw Failure(
        failure_number::kUnspecified,
        "The data source \"" + WithoutUsers(parts.data_source) +
            "\" is not the address of a cube server; it must begin with http:// or https://.");
  }
  return parts;
}

std::string List(const std::vector<std::string>& names) {
  std::string list;
  for (std::size_t i = 0; i < names.size() && i < kNamesShown; ++i) {
    list += (i == 0 ? "\"" : ", \"") + Excerpt(names[i]) + "\"";
  }
  if (names.size() > kNamesShown) list += ", …";
  return names.empty() ? "none" : list;
}

const std::string* Named(const Locale& locale, const std::vector<std::string>& names,
                         const std::string& wanted) {
  for (const std::string& name : names) {
    if (EqualNoCase(locale, name, wanted)) return &name;
  }
  return nullptr;
}

ServerSettings WithTimeout(ServerSettings settings, double seconds) {
  const double timeout = std::min(std::ceil(seconds), kLargestTimeout);
  if (timeout > 0) settings.total_seconds = static_cast<int>(timeout);
  return settings;
}

class XmlaConnection : public CubeConnection {
 public:
  /// Lists the server's catalogs.
  XmlaConnection(const Locale& locale, std::shared_ptr<Server> server)
      : locale_(locale), server_(std::move(server)), catalogs_(ListCatalogs(*server_)) {
    if (!catalogs_.empty()) catalog_ = catalogs_.front();
  }

  /// The system has one name for the catalog and its cube: it may be either's.
  void UseCatalog(const std::string& name) {
    const std::string* catalog = Named(locale_, catalogs_, name);
    catalog_ = catalog != nullptr ? *catalog : CatalogOfCube(name);
    cube_ = name;
  }
  void SetMaxCells(std::size_t count) { max_cells_ = count; }

  std::string DefaultDatabase() const override { return catalog_; }
  std::vector<std::string> CatalogNames() const override { return catalogs_; }
  std::unique_ptr<CubeCatalog> Structure() override {
    return std::make_unique<XmlaCatalog>(locale_, server_, catalog_, cube_);
  }
  std::unique_ptr<Cellset> Execute(const std::string& mdx) override {
    auto data = std::make_unique<CellsetData>(max_cells_);
    server_->Execute(catalog_, mdx, *data);
    return data;
  }

 private:
  std::string CatalogOfCube(const std::string& cube) const;

  const Locale& locale_;
  std::shared_ptr<Server> server_;
  std::vector<std::string> catalogs_;
  std::string catalog_;  ///< the one in use
  std::string cube_;     ///< the one that the connection text named; "": none
  std::size_t max_cells_ = kMaxCells;
};

std::string XmlaConnection::CatalogOfCube(const std::string& cube) const {
  std::vector<std::string> holders;
  for (const std::string& catalog : catalogs_) {
    const auto cubes = ListCubes(*server_, catalog);
    if (Named(locale_, cubes, cube) != nullptr) holders.push_back(catalog);
  }
  if (holders.size() == 1) return holders.front();
  const std::string server = "The cube server " + server_->shown_address();
  if (holders.empty()) {
    throw Failure(failure_number::kUnspecified, server + " has no catalog \"" + cube +
                                                    "\", and none with a cube of that name. "
                                                    "Its catalogs: " +
                                                    List(catalogs_) + ".");
  }
  throw Failure(failure_number::kUnspecified,
                server + " has a cube \"" + cube + "\" in several catalogs: " + List(holders) +
                    ". Give one of them a catalog of the cube's name.");
}

}  // namespace

std::unique_ptr<CubeConnection> XmlaCubeProvider::Connect(const std::string& text,
                                                          const QueryStop* stop) {
  const cube_text::ConnectionText parts = ReadText(locale_, text);
  auto server = std::make_shared<Server>(parts.data_source,
                                         WithTimeout(access_.settings(), parts.timeout_seconds),
                                         access_.transport, stop);
  auto connection = std::make_unique<XmlaConnection>(locale_, std::move(server));
  if (!parts.initial_catalog.empty()) connection->UseCatalog(parts.initial_catalog);
  if (parts.max_cells > 0) connection->SetMaxCells(parts.max_cells);
  return connection;
}

}  // namespace vok::xmla
