#include "cube/discovery.h"

#include <algorithm>

#include "cube/connection.h"
#include "platform/failure.h"
#include "platform/locale.h"

namespace vok {
namespace {

/// Index of the first level with members of its own.
std::size_t TopLevel(const CubeHierarchy& hierarchy) {
  return hierarchy.LevelCount() > 0 && hierarchy.LevelAt(0)->IsAll() ? 1 : 0;
}

void VisitLevel(const CubeLevel& level, const std::function<void(const CubeMember&)>& visit) {
  const std::size_t count = level.MemberCount();
  for (std::size_t member = 0; member < count; ++member) visit(*level.MemberAt(member));
}

/// Some servers put the dimension before the name of a hierarchy.
bool IsXlFile(const std::string& hierarchy) {
  return hierarchy == "xlFile" || hierarchy == "ActX.xlFile";
}

/// Calls `visit` with every dimension of the catalog's cube, in order.
template <typename Visit>
void WalkDimensions(const Host& host, const std::string& cube_file, const std::string& catalog,
                    Visit visit) {
  if (cube_file.empty()) return;
  const auto connection = host.cube.Connect(CatalogConnectionText(cube_file, catalog), nullptr);
  const auto structure = connection->Structure();
  const auto cube = FirstCube(*structure, catalog);
  for (std::size_t i = 0; i < cube->DimensionCount(); ++i) visit(*cube->DimensionAt(i));
  connection->Close();
}

}  // namespace

std::unique_ptr<CubeDef> FirstCube(const CubeCatalog& catalog, const std::string& cube_name) {
  if (catalog.CubeCount() == 0) {
    throw Failure(failure_number::kItemNotFound, "The catalog \"" + cube_name + "\" has no cube");
  }
  return catalog.CubeAt(0);
}

bool IsMoneyMeasure(const std::string& name) { return name.find("Quantity") == std::string::npos; }

void VisitMembers(const CubeHierarchy& hierarchy,
                  const std::function<void(const CubeMember&)>& visit) {
  for (std::size_t level = TopLevel(hierarchy); level < hierarchy.LevelCount(); ++level) {
    VisitLevel(*hierarchy.LevelAt(level), visit);
  }
}

std::vector<std::string> MemberNames(const CubeHierarchy& hierarchy) {
  std::vector<std::string> names;
  VisitMembers(hierarchy, [&](const CubeMember& member) { names.push_back(member.Name()); });
  return names;
}

std::vector<std::string> TopMemberNames(const CubeHierarchy& hierarchy) {
  std::vector<std::string> names;
  const std::size_t top = TopLevel(hierarchy);
  if (top < hierarchy.LevelCount()) {
    VisitLevel(*hierarchy.LevelAt(top),
               [&](const CubeMember& member) { names.push_back(member.Name()); });
  }
  return names;
}

bool IsServerAddress(const Locale& locale, const std::string& source) {
  const auto begins = [&](std::string_view scheme) {
    return EqualNoCase(locale, std::string_view(source).substr(0, scheme.size()), scheme);
  };
  return begins("http://") || begins("https://");
}

bool IsCubeThere(const Host& host, const std::string& cube_file) {
  return !cube_file.empty() &&
         (IsServerAddress(host.locale, cube_file) || host.files.Exists(cube_file));
}

std::unique_ptr<CubeConnection> OpenForCatalogs(const Host& host, const std::string& cube_file) {
  return host.cube.Connect(CatalogsConnectionText(cube_file), nullptr);
}

QelCatalogs ListQelCatalogs(const CubeConnection& connection) {
  QelCatalogs catalogs;
  const std::string standard = connection.DefaultDatabase();
  for (const std::string& name : connection.CatalogNames()) {
    if (!name.ends_with("QEL")) continue;
    if (name == standard) catalogs.chosen = catalogs.names.size();
    catalogs.names.push_back(name);
  }
  if (!catalogs.chosen && !catalogs.names.empty()) catalogs.chosen = 0;
  return catalogs;
}

Value::Array GetMeasFromCube(const Host& host, const std::string& cube_file,
                             const std::string& catalog) {
  Value::Array measures;
  if (!IsCubeThere(host, cube_file)) return measures;
  WalkDimensions(host, cube_file, catalog, [&](const CubeDimension& dimension) {
    if (dimension.Name() != "Measures") return;
    for (const std::string& name : MemberNames(*dimension.HierarchyAt(0))) {
      if (IsMoneyMeasure(name)) measures.emplace_back(name);
    }
  });
  return measures;
}

MeasureChoices ReadMeasureChoices(const Host& host, const std::string& cube_file,
                                  const std::string& catalog) {
  MeasureChoices choices;
  WalkDimensions(host, cube_file, catalog, [&](const CubeDimension& dimension) {
    const std::string name = dimension.Name();
    if (name == "Measures") choices.measures = MemberNames(*dimension.HierarchyAt(0));
    if (name == "MoneySet") choices.money_sets = MemberNames(*dimension.HierarchyAt(0));
  });
  return choices;
}

std::vector<std::string> ReadObsMembers(const Host& host, const std::string& cube_file,
                                        const std::string& catalog) {
  std::vector<std::string> members;
  WalkDimensions(host, cube_file, catalog, [&](const CubeDimension& dimension) {
    if (dimension.Name() != "ActX") return;
    for (std::size_t i = 0; i < dimension.HierarchyCount(); ++i) {
      const auto hierarchy = dimension.HierarchyAt(i);
      if (IsXlFile(hierarchy->Name())) members = TopMemberNames(*hierarchy);
    }
  });
  return members;
}

}  // namespace vok
