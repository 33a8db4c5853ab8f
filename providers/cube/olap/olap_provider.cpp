#include "providers/cube/olap/olap_provider.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "platform/connection_text.h"
#include "platform/failure.h"
#include "providers/cube/olap/cube_structure.h"
#include "providers/cube/olap/live/live_facts.h"
#include "providers/cube/olap/mdx/engine.h"

namespace vok::olap {
namespace {

constexpr char kProvider[] = "MSOLAP";

struct Cubes {
  std::vector<std::shared_ptr<const CubeView>> views;
  std::vector<std::shared_ptr<LiveFacts>> live;  ///< the facts of those that are live
};

void CheckParts(const Locale& locale, const cube_text::ConnectionText& parts,
                const std::string& text) {
  if (!parts.provider.empty() && !EqualNoCase(locale, parts.provider, kProvider)) {
    throw Failure(
        failure_number::kProviderNotFound,
        "The provider \"" + parts.provider + "\" is not for cubes; use " + kProvider + ".");
  }
  if (parts.data_source.empty()) {
    throw Failure(failure_number::kUnspecified,
                  "The connection text \"" + text + "\" names no cube file (Data Source).");
  }
}

/// Each keeps the file alive by itself.
Cubes OpenCubes(const Files& files, const Locale& locale, const std::string& path,
                const OpenTableServer& open_server, const QueryStop& stop) {
  const std::shared_ptr<const CubeFile> file = CubeFile::Open(files, path);
  Cubes cubes;
  for (const StoredCube& cube : file->cubes()) {
    const std::shared_ptr<const StoredCube> stored(file, &cube);
    std::shared_ptr<LiveFacts> live;
    if (cube.live != nullptr) {
      live = std::make_shared<LiveFacts>(stored, path, open_server(cube.live->address, stop));
      cubes.live.push_back(live);
    }
    cubes.views.push_back(std::make_shared<const CubeView>(stored, locale, live));
  }
  return cubes;
}

std::size_t FindCatalog(const std::vector<std::shared_ptr<const CubeView>>& cubes,
                        const std::string& catalog, const std::string& path) {
  std::string names;
  for (std::size_t i = 0; i < cubes.size(); ++i) {
    const std::string& name = cubes[i]->model().name;
    if (cubes[i]->SameName(name, catalog)) return i;
    names += (i == 0 ? "\"" : ", \"") + name + "\"";
  }
  throw Failure(failure_number::kUnspecified,
                "The cube file " + path + " has no catalog \"" + catalog +
                    "\". It has: " + (names.empty() ? "none" : names) + ".");
}

std::size_t Bytes(std::size_t megabytes) {
  constexpr int kShift = 20;
  return std::min(megabytes, std::numeric_limits<std::size_t>::max() >> kShift) << kShift;
}

QueryLimits LimitsIn(const cube_text::ConnectionText& parts, const QueryStop* stop) {
  QueryLimits limits;
  if (parts.max_cells > 0) limits.max_cells = parts.max_cells;
  if (parts.max_memory > 0) limits.max_memory = Bytes(parts.max_memory);
  limits.timeout_seconds = parts.timeout_seconds;
  limits.stop = stop;
  return limits;
}

class OlapConnection : public CubeConnection {
 public:
  /// `catalog`: the one that the connection text names, if it names one.
  OlapConnection(Cubes cubes, std::optional<std::size_t> catalog, const QueryLimits& limits)
      : cubes_(std::move(cubes)), catalog_(catalog), limits_(limits) {}

  std::string DefaultDatabase() const override {
    return cubes_.views.empty() ? "" : CubeInUse()->model().name;
  }
  std::vector<std::string> CatalogNames() const override {
    std::vector<std::string> names;
    for (const auto& cube : cubes_.views) names.push_back(cube->model().name);
    return names;
  }
  std::unique_ptr<CubeCatalog> Structure() override {
    return std::make_unique<OlapCatalog>(cubes_.views.empty() ? nullptr : CubeInUse());
  }
  /// A live cube shows one state of its database, which is that of one run.
  bool ServesManyRuns() const override { return cubes_.live.empty(); }
  std::unique_ptr<Cellset> Execute(const std::string& mdx) override {
    for (const auto& live : cubes_.live) live->BeginQuery();
    return catalog_ ? RunMdx(CubeInUse(), mdx, limits_) : RunMdx(cubes_.views, mdx, limits_);
  }

 private:
  const std::shared_ptr<const CubeView>& CubeInUse() const {
    return cubes_.views[catalog_.value_or(0)];
  }

  Cubes cubes_;
  std::optional<std::size_t> catalog_;
  QueryLimits limits_;
};

}  // namespace

std::unique_ptr<CubeConnection> OlapCubeProvider::Connect(const std::string& text,
                                                          const QueryStop* stop) {
  const cube_text::ConnectionText parts = cube_text::ParseConnectionText(text);
  CheckParts(locale_, parts, text);
  static const QueryStop never;
  Cubes cubes =
      OpenCubes(files_, locale_, parts.data_source, open_server_, stop == nullptr ? never : *stop);
  std::optional<std::size_t> catalog;
  if (!parts.initial_catalog.empty()) {
    catalog = FindCatalog(cubes.views, parts.initial_catalog, parts.data_source);
  }
  return std::make_unique<OlapConnection>(std::move(cubes), catalog, LimitsIn(parts, stop));
}

}  // namespace vok::olap
