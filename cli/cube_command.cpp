// vokcube cube build | info: making a cube file, and looking into one.
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "providers/olap/build/build_cube.h"
#include "providers/olap/storage/cube_file.h"

namespace vok::cli {
namespace {

using Json = nlohmann::ordered_json;

/// One line on standard error that is written over and over; nothing when that is no terminal.
class ProgressLine {
 public:
  void Show(const std::string& what, double done) const {
    if (terminal_) {
      std::cerr << "\r\033[K" << what << ' ' << static_cast<int>(done * 100) << " %" << std::flush;
    }
  }
  ~ProgressLine() {
    if (terminal_) std::cerr << "\r\033[K";
  }

 private:
  bool terminal_ = isatty(STDERR_FILENO) != 0;
};

void Build(const CommonOptions& common, const olap::BuildRequest& request) {
  const auto session = common.NewSession();
  const auto start = std::chrono::steady_clock::now();
  olap::BuildReport report;
  {
    const ProgressLine line;
    report = olap::BuildCubeFile(
        session->host().files, session->host().locale, request,
        [&line](const std::string& what, double done) { line.Show(what, done); });
  }
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  for (const auto& cube : report.cubes) {
    std::cout << cube.name << ": " << cube.facts << " facts, " << cube.stored_cells
              << " stored cells\n";
  }
  std::cout << request.output_path << ": " << report.file_bytes << " bytes, "
            << static_cast<int>(taken.count() * 1000) << " ms\n";
}

Json Describe(const olap::CubeModel& model) {
  Json dimensions = Json::array();
  for (const auto& dimension : model.dimensions) {
    Json hierarchies = Json::array();
    for (const auto index : dimension.hierarchies) {
      const auto& hierarchy = model.hierarchies[index];
      Json levels = Json::array();
      for (std::size_t i = 0; i < hierarchy.levels().size(); ++i) {
        levels.push_back({{"name", hierarchy.levels()[i].name},
                          {"uniqueName", hierarchy.LevelUniqueName(i)},
                          {"members", hierarchy.levels()[i].members.size()}});
      }
      hierarchies.push_back({{"name", hierarchy.name()},
                             {"uniqueName", hierarchy.unique_name()},
                             {"levels", levels}});
    }
    dimensions.push_back({{"name", dimension.name}, {"hierarchies", hierarchies}});
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

void PrintCube(const Json& cube) {
  std::cout << "Cube " << cube["name"].get<std::string>() << ", " << cube["facts"] << " facts\n"
            << "  Measures:";
  for (const auto& measure : cube["measures"])
    std::cout << ' ' << measure.get<std::string>() << ';';
  std::cout << '\n';
  if (!cube["calculatedMembers"].empty()) std::cout << "  Calculated:";
  for (const auto& member : cube["calculatedMembers"])
    std::cout << ' ' << member.get<std::string>() << ';';
  if (!cube["calculatedMembers"].empty()) std::cout << '\n';
  for (const auto& dimension : cube["dimensions"]) {
    for (const auto& hierarchy : dimension["hierarchies"]) {
      std::cout << "  " << hierarchy["uniqueName"].get<std::string>() << ':';
      for (const auto& level : hierarchy["levels"]) {
        std::cout << ' ' << level["name"].get<std::string>() << " (" << level["members"] << ')';
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
  const auto file = olap::CubeFile::Open(session->host().files, options.source);
  Json cubes = Json::array();
  for (const auto& cube : file->cubes()) cubes.push_back(Describe(cube.model));
  if (options.json) {
    std::cout << Json{{"source", options.source}, {"cubes", cubes}}.dump(2) << '\n';
  } else {
    for (const auto& cube : cubes) PrintCube(cube);
  }
}

}  // namespace

void AddCubeCommand(CLI::App& app, const CommonOptions& common) {
  auto* command = app.add_subcommand("cube", "Build a cube file, or look into one");
  command->require_subcommand(1);
  command->fallthrough();

  const auto request = std::make_shared<olap::BuildRequest>();
  auto* build = command->add_subcommand("build", "Build a cube file from tables");
  build->add_option("--schema", request->schema_path, "The schema, XML")->required();
  build->add_option("--data", request->data_path, "Folder of CSV files, or SQLite database")
      ->required();
  build->add_option("--output", request->output_path, "The cube file to write")->required();
  build->callback([&common, request] { Build(common, *request); });

  const auto options = std::make_shared<InfoOptions>();
  auto* info = command->add_subcommand("info", "Print what a cube file holds");
  info->add_option("SOURCE", options->source, "The cube file")->required();
  info->add_flag("--json", options->json, "Print one JSON document");
  info->callback([&common, options] { Info(common, *options); });
  AddCubeLists(*command, common);
}

}  // namespace vok::cli
