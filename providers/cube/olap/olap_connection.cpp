#include "providers/cube/olap/olap_connection.h"

#include <algorithm>
#include <limits>

#include "platform/connection_text.h"
#include "platform/failure.h"

namespace vok::olap {
namespace {

constexpr char kProvider[] = "MSOLAP";

void CheckParts(const Locale& locale, const cube_text::ConnectionText& parts,
                const std::string& text) {
  if (!parts.provider.empty() && !EqualNoCase(locale, parts.provider, kProvider)) {
    throw Failure(
        failure_number::kProviderNotFound,
        "The provider \"" + parts.provider + "\" is none for cubes; use " + kProvider + ".");
  }
  if (parts.data_source.empty()) {
    throw Failure(failure_number::kUnspecified,
                  "The connection text \"" + text + "\" names no cube file (Data Source).");
  }
}

std::size_t Bytes(std::size_t megabytes) {
  constexpr int kShift = 20;
  return std::min(megabytes, std::numeric_limits<std::size_t>::max() >> kShift) << kShift;
}

}  // namespace

void OlapConnection::Open(const std::string& connection_string, const std::string&,
                          const std::string&, int32_t) {
  Close();
  cancelled_->store(false);
  if (!connection_string.empty()) text_ = connection_string;
  const cube_text::ConnectionText parts = cube_text::ParseConnectionText(text_);
  CheckParts(locale_, parts, text_);
  const auto opened = OpenCatalogs(files_, locale_, parts.data_source);
  catalog_.reset();
  if (!parts.initial_catalog.empty()) catalog_ = opened->Find(parts.initial_catalog);
  limits_ = QueryLimits();
  if (parts.max_cells > 0) limits_.max_cells = parts.max_cells;
  if (parts.max_memory > 0) limits_.max_memory = Bytes(parts.max_memory);
  limits_.timeout_seconds = parts.timeout_seconds;
  opened_ = opened;
}

std::shared_ptr<const OpenedCatalogs> OlapConnection::opened() const {
  if (opened_ == nullptr) {
    throw Failure(failure_number::kObjectClosed, "The connection to the cube is not open.");
  }
  return opened_;
}

std::string OlapConnection::DefaultDatabase() const {
  const auto catalogs = opened();
  if (catalogs->cubes.empty()) return {};
  return catalogs->cubes[catalog_.value_or(0)]->model().name;
}

std::vector<std::string> OlapConnection::CatalogNames() const {
  std::vector<std::string> names;
  for (const auto& cube : opened()->cubes) names.push_back(cube->model().name);
  return names;
}

const OlapConnection& OlapConnection::From(const CubeConnection& connection) {
  const auto* own = dynamic_cast<const OlapConnection*>(&connection);
  if (own == nullptr) {
    throw Failure(failure_number::kObjectClosed, "The connection is none to a cube file.");
  }
  return *own;
}

}  // namespace vok::olap
