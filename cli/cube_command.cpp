// vokcube cube build | info: making a cube file, and looking into one.
#include <chrono>
#include <iostream>
#include <memory>

#include "cli/command.h"
#include "cli/json_text.h"
#include "cli/old_cube.h"
#include "cli/terminal.h"
#include "platform/connection_text.h"
#include "platform/shown_text.h"
#include "providers/cube/olap/build/build_cube.h"
#include "providers/cube/olap/storage/cube_file.h"

namespace vok::cli {
namespace {

/// One line on standard error that is written over and over; nothing when that is not a terminal.
class ProgressLine {
 public:
  void Show(const std::string& what, double done) const {
    if (terminal_) {
      std::cerr << "\r\033[K" << OneLine(what) << ' ' << static_cast<int>(done * 100) << " %"
                << std::flush;
    }
  }
  ~ProgressLine() {
    if (terminal_) std::cerr << "\r\033[K";
  }

 private:
  bool terminal_ = ErrorsAreShown();
};

struct BuildOptions {
  olap::BuildRequest request;
  bool allow_empty = false;
};

void Build(const CommonOptions& common, const BuildOptions& options) {
  const auto session = common.NewSession();
  const auto start = std::chrono::steady_clock::now();
  olap::BuildRequest request = options.request;
  const OldCube old(session->host().files, request.output_path);
  if (!options.allow_empty) {
    request.check = [&old](const olap::BuildReport& made) { old.RefuseEmptied(made); };
  }
  olap::BuildReport report;
  {
    const ProgressLine line;
    report = olap::BuildCubeFile(
        session->host().files, session->host().locale, request,
        [&line](const std::string& what, double done) { line.Show(what, done); });
  }
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  for (const auto& cube : report.cubes) {
    std::cout << OneLine(cube.name) << ": " << cube.facts << " facts, " << cube.stored_cells
              << " stored cells\n";
  }
  std::cout << OneLine(request.output_path) << ": " << report.file_bytes << " bytes, "
            << static_cast<int>(taken.count() * 1000) << " ms\n";
}

Json LevelJson(const std::string& name, const std::string& unique_name, std::size_t members) {
  return {{"name", name}, {"uniqueName", unique_name}, {"members", members}};
}

Json HierarchyJson(const std::string& name, const std::string& unique_name, const Json& levels) {
  return {{"name", name}, {"uniqueName", unique_name}, {"levels", levels}};
}

Json DimensionJson(const std::string& name, const Json& hierarchies) {
  return {{"name", name}, {"hierarchies", hierarchies}};
}

Json Describe(const olap::Hierarchy& hierarchy) {
  Json levels = Json::array();
  for (std::size_t i = 0; i < hierarchy.levels().size(); ++i) {
    const auto& level = hierarchy.levels()[i];
    levels.push_back(LevelJson(level.name, hierarchy.LevelUniqueName(i), level.members.size()));
  }
  return HierarchyJson(hierarchy.name(), hierarchy.unique_name(), levels);
}

Json Describe(const olap::CubeModel& model) {
  Json dimensions = Json::array();
  for (const auto& dimension : model.dimensions) {
    Json hierarchies = Json::array();
    for (const auto index : dimension.hierarchies) {
      hierarchies.push_back(Describe(model.hierarchies[index]));
    }
    dimensions.push_back(DimensionJson(dimension.name, hierarchies));
  }
  Json measures = Json::array();
  for (const auto& measure : model.measures) measures.push_back(measure.name);
  Json calculated = Json::array();
  for (const auto& member : model.calculated) {
    calculated.push_back(member.above + "." + olap::Bracketed(member.name));
  }
  return {{"name", model.name},
          {"facts", model.fact_count},
          {"measures", measures},
          {"calculatedMembers", calculated},
          {"dimensions", dimensions}};
}

Json Describe(const CubeHierarchy& hierarchy) {
  Json levels = Json::array();
  for (std::size_t i = 0; i < hierarchy.LevelCount(); ++i) {
    const auto level = hierarchy.LevelAt(i);
    levels.push_back(LevelJson(level->Name(), level->UniqueName(), level->MemberCount()));
  }
  return HierarchyJson(hierarchy.Name(), hierarchy.UniqueName(), levels);
}

Json MeasureNames(const CubeDimension& measures) {
  Json names = Json::array();
  const auto level = measures.HierarchyAt(0)->LevelAt(0);
  for (std::size_t i = 0; i < level->MemberCount(); ++i) {
    names.push_back(level->MemberAt(i)->Name());
  }
  return names;
}

/// The measures are the first dimension.
Json Describe(const CubeDef& cube, const std::string& catalog) {
  Json dimensions = Json::array();
  for (std::size_t i = 1; i < cube.DimensionCount(); ++i) {
    const auto dimension = cube.DimensionAt(i);
    Json hierarchies = Json::array();
    for (std::size_t k = 0; k < dimension->HierarchyCount(); ++k) {
      hierarchies.push_back(Describe(*dimension->HierarchyAt(k)));
    }
    dimensions.push_back(DimensionJson(dimension->Name(), hierarchies));
  }
  return {{"name", cube.Name()},
          {"catalog", catalog},
          {"measures", MeasureNames(*cube.DimensionAt(0))},
          {"dimensions", dimensions}};
}

Json CubesOfServer(CubeProvider& provider, const std::string& source) {
  const std::string text = "Provider=MSOLAP;Data Source=" + source;
  Json cubes = Json::array();
  for (const std::string& name : provider.Connect(text, nullptr)->CatalogNames()) {
    const auto connection = provider.Connect(text + ";Initial Catalog=[" + name + "]", nullptr);
    const auto catalog = connection->Structure();
    for (std::size_t i = 0; i < catalog->CubeCount(); ++i) {
      cubes.push_back(Describe(*catalog->CubeAt(i), name));
    }
  }
  return cubes;
}

Json CubesOfFile(const Host& host, const std::string& source) {
  const auto file = olap::CubeFile::Open(host.files, source);
  Json cubes = Json::array();
  for (const auto& cube : file->cubes()) cubes.push_back(Describe(cube.model));
  return cubes;
}

void PrintCube(const Json& cube) {
  std::cout << "Cube " << ShownText(cube["name"]);
  if (cube.contains("catalog")) std::cout << " in " << ShownText(cube["catalog"]);
  if (cube.contains("facts")) std::cout << ", " << cube["facts"] << " facts";
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
  cube_text::ConnectionText address;
  address.data_source = options.source;
  const Json cubes = cube_text::NamesServer(address)
                         ? CubesOfServer(session->host().cube, options.source)
                         : CubesOfFile(session->host(), options.source);
  if (options.json) {
    std::cout << JsonText({{"source", options.source}, {"cubes", cubes}});
  } else {
    for (const auto& cube : cubes) PrintCube(cube);
  }
}

}  // namespace

void AddCubeCommand(CLI::App& app, const CommonOptions& common) {
  auto* command = app.add_subcommand("cube", "Build a cube file, or look into one");
  command->require_subcommand(1);
  command->fallthrough();

  const auto build_options = std::make_shared<BuildOptions>();
  olap::BuildRequest& request = build_options->request;
  auto* build = command->add_subcommand("build", "Build a cube file from tables");
  build->add_option("--schema", request.schema_path, "The schema, XML")->required();
  build->add_option("--data", request.data_path, "Folder of CSV files, or SQLite database")
      ->required();
  build->add_option("--output", request.output_path, "The cube file to write")->required();
  build->add_flag("--allow-empty", build_options->allow_empty,
                  "Let a cube without facts take the place of one that has some");
  build->callback([&common, build_options] { Build(common, *build_options); });

  const auto options = std::make_shared<InfoOptions>();
  auto* info = command->add_subcommand("info", "Print what a cube file or a cube server holds");
  info->add_option("SOURCE", options->source, "The cube file, or a cube server's address")
      ->required();
  info->add_flag("--json", options->json, "Print one JSON document");
  info->callback([&common, options] { Info(common, *options); });
  AddCubeLists(*command, common);
}

}  // namespace vok::cli
