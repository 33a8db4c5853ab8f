#include "providers/cube/xmla/xmla_connection.h"

#include <algorithm>
#include <cmath>

#include "platform/failure.h"
#include "platform/shown_text.h"
#include "providers/cube/xmla/server_cube.h"

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
        "The provider \"" + parts.provider + "\" is none for cubes; use " + kProvider + ".");
  }
  if (!cube_text::NamesServer(parts)) {
    throw Failure(failure_number::kUnspecified,
                  "The data source \"" + WithoutUsers(parts.data_source) +
                      "\" is no address of a cube server; it must begin with http:// or https://.");
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

}  // namespace

void XmlaConnection::Open(const std::string& connection_string, const std::string&,
                          const std::string&, int32_t) {
  Close();
  if (!connection_string.empty()) text_ = connection_string;
  const cube_text::ConnectionText parts = ReadText(locale_, text_);
  server_ = std::make_shared<Server>(parts.data_source, Settings(parts), access_.transport);
  asked_.Publish(*server_);
  auto opened = std::make_shared<OpenedServer>();
  opened->server = server_;
  if (parts.max_cells > 0) opened->max_cells = parts.max_cells;
  opened->catalogs = ListCatalogs(*opened->server);
  if (!parts.initial_catalog.empty()) {
    UseCatalog(*opened, parts.initial_catalog);
  } else if (!opened->catalogs.empty()) {
    opened->catalog = opened->catalogs.front();
  }
  opened_ = opened;
}

void XmlaConnection::Close() {
  asked_.Withdraw();
  opened_ = nullptr;
  server_ = nullptr;
}

HttpSettings XmlaConnection::Settings(const cube_text::ConnectionText& parts) const {
  HttpSettings settings = access_.settings();
  const double timeout = std::min(std::ceil(parts.timeout_seconds), kLargestTimeout);
  if (timeout > 0) settings.total_seconds = static_cast<int>(timeout);
  return settings;
}

/// The system has one name for the catalog and its cube: it may be either's.
void XmlaConnection::UseCatalog(OpenedServer& opened, const std::string& name) const {
  const std::string* catalog = Named(locale_, opened.catalogs, name);
  opened.catalog = catalog != nullptr ? *catalog : CatalogOfCube(opened, name);
  opened.cube = name;
}

std::string XmlaConnection::CatalogOfCube(OpenedServer& opened, const std::string& cube) const {
  std::vector<std::string> holders;
  for (const std::string& catalog : opened.catalogs) {
    const auto cubes = ListCubes(*opened.server, catalog);
    if (Named(locale_, cubes, cube) != nullptr) holders.push_back(catalog);
  }
  if (holders.size() == 1) return holders.front();
  const std::string server = "The cube server " + opened.server->shown_address();
  if (holders.empty()) {
    throw Failure(failure_number::kUnspecified, server + " has no catalog \"" + cube +
                                                    "\", and none with a cube of that name. "
                                                    "Its catalogs: " +
                                                    List(opened.catalogs) + ".");
  }
  throw Failure(failure_number::kUnspecified,
                server + " has a cube \"" + cube + "\" in several catalogs: " + List(holders) +
                    ". Give one of them a catalog of the cube's name.");
}

std::shared_ptr<const OpenedServer> XmlaConnection::opened() const {
  if (opened_ == nullptr) {
    throw Failure(failure_number::kObjectClosed, "The connection to the cube server is not open.");
  }
  return opened_;
}

const XmlaConnection& XmlaConnection::From(const CubeConnection& connection) {
  const auto* own = dynamic_cast<const XmlaConnection*>(&connection);
  if (own == nullptr) {
    throw Failure(failure_number::kObjectClosed, "The connection is none to a cube server.");
  }
  return *own;
}

}  // namespace vok::xmla
