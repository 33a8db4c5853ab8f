// vokcube cube info: what a cube file or a cube server holds.
#include <iostream>
#include <memory>

#include "cli/command.h"
#include "cli/print.h"
#include "cli/progress_line.h"
#include "platform/shown_text.h"
#include "platform/table_server.h"
#include "providers/cube/olap/storage/cube_file.h"

namespace vok::cli {
namespace {

Json Describe(const CubeLevel& level) {
  return {
      {"name", level.Name()}, {"uniqueName", level.UniqueName()}, {"members", level.MemberCount()}};
}

Json Describe(const CubeHierarchy& hierarchy) {
  Json levels = Json::array();
  for (std::size_t i = 0; i < hierarchy.LevelCount(); ++i) {
    levels.push_back(Describe(*hierarchy.LevelAt(i)));
  }
  return {{"name", hierarchy.Name()}, {"uniqueName", hierarchy.UniqueName()}, {"levels", levels}};
}

Json Describe(const CubeDimension& dimension) {
  Json hierarchies = Json::array();
  for (std::size_t i = 0; i < dimension.HierarchyCount(); ++i) {
    hierarchies.push_back(Describe(*dimension.HierarchyAt(i)));
  }
  return {{"name", dimension.Name()}, {"hierarchies", hierarchies}};
}

/// Those that the cube computes are listed apart, where the provider tells them.
Json MeasureNames(const CubeDef& cube) {
  const bool listed_apart = !cube.CalculatedMembers().empty();
  Json names = Json::array();
  const auto level = cube.DimensionAt(0)->HierarchyAt(0)->LevelAt(0);
  for (std::size_t i = 0; i < level->MemberCount(); ++i) {
    const auto measure = level->MemberAt(i);
    if (!(listed_apart && measure->IsCalculated())) names.push_back(measure->Name());
  }
  return names;
}

/// The measures are the first dimension.
Json Describe(const CubeDef& cube, const std::string& catalog) {
  Json description = {{"name", cube.Name()}};
  if (const auto facts = cube.FactCount()) {
    description["facts"] = *facts;
  } else {
    description["catalog"] = catalog;
  }
  description["measures"] = MeasureNames(cube);
  if (cube.FactCount()) description["calculatedMembers"] = cube.CalculatedMembers();
  Json& dimensions = description["dimensions"] = Json::array();
  for (std::size_t i = 1; i < cube.DimensionCount(); ++i) {
    dimensions.push_back(Describe(*cube.DimensionAt(i)));
  }
  return description;
}

Json DescribeCubes(CubeProvider& provider, const std::string& source) {
  const ProgressLine line(false, "looking into " + source);
  Json cubes = Json::array();
  for (const std::string& name : provider.Connect(CubeText(source), nullptr)->CatalogNames()) {
    const auto connection = provider.Connect(CubeText(source, name), nullptr);
    const auto catalog = connection->Structure();
    for (std::size_t i = 0; i < catalog->CubeCount(); ++i) {
      cubes.push_back(Describe(*catalog->CubeAt(i), name));
    }
  }
  return cubes;
}

/// "2024-12-01T06:30:00Z".
std::string UtcText(int64_t seconds) {
  constexpr double kDay = 86400;
  Date moment = Date::FromCivil(1970, 1, 1);
  moment.serial += static_cast<double>(seconds) / kDay;
  return IsoDateTime(moment) + "Z";
}

/// What the file tells of the tables that its cubes were made of.
void AddOrigins(const Files& files, const std::string& source, Json& cubes) {
  if (NamesTableServer(source) || !files.Exists(source)) return;
  const auto file = olap::CubeFile::Open(files, source);
  for (const olap::StoredCube& stored : file->cubes()) {
    if (!stored.origin) continue;
    for (Json& cube : cubes) {
      if (cube["name"] != stored.model.name) continue;
      cube["live"] = stored.live != nullptr;
      cube["builtFrom"] = stored.origin->address;
      if (stored.origin->refreshed > 0) cube["refreshed"] = UtcText(stored.origin->refreshed);
    }
  }
}

void PrintCube(const Json& cube) {
  std::cout << "Cube " << ShownText(cube["name"]);
  if (cube.contains("catalog")) std::cout << " in " << ShownText(cube["catalog"]);
  if (cube.contains("facts")) std::cout << ", " << cube["facts"] << " facts";
  if (cube.value("live", false)) {
    std::cout << " when its file was made, live: they stay in the database";
  }
  if (cube.contains("builtFrom")) std::cout << "\n  Built from " << ShownText(cube["builtFrom"]);
  if (cube.contains("refreshed")) std::cout << ", refreshed " << ShownText(cube["refreshed"]);
  std::cout << "\n  Measures:";
  for (const auto& measure : cube["measures"]) std::cout << ' ' << ShownText(measure) << ';';
  std::cout << '\n';
  const Json calculated = cube.value("calculatedMembers", Json::array());
  if (!calculated.empty()) std::cout << "  Calculated:";
  for (const auto& member : calculated) std::cout << ' ' << ShownText(member) << ';';
  if (!calculated.empty()) std::cout << '\n';
  for (const auto& dimension : cube["dimensions"]) {
    for (const auto& hierarchy : dimension["hierarchies"]) {
      std::cout << "  " << ShownText(hierarchy["uniqueName"]) << ':';
      for (const auto& level : hierarchy["levels"]) {
        std::cout << ' ' << ShownText(level["name"]) << " (" << level["members"] << ')';
      }
      std::cout << '\n';
    }
  }
}

struct InfoOptions {
  std::string source;
  bool json = false;
};

void Info(const CommonOptions& common, const InfoOptions& options) {
  const auto session = common.NewSession();
  Json cubes = DescribeCubes(session->host().cube, options.source);
  AddOrigins(session->host().files, options.source, cubes);
  if (options.json) {
    std::cout << JsonText({{"source", options.source}, {"cubes", cubes}});
  } else {
    for (const auto& cube : cubes) PrintCube(cube);
  }
}

}  // namespace

void AddCubeInfo(CLI::App& cube, const CommonOptions& common) {
  const auto options = std::make_shared<InfoOptions>();
  auto* info = cube.add_subcommand("info", "Print what a cube file or a cube server holds");
  info->add_option("SOURCE", options->source, "The cube file, or a cube server's address")
      ->required();
  info->add_flag("--json", options->json, "Print one JSON document");
  info->callback([&common, options] { Info(common, *options); });
}

}  // namespace vok::cli
