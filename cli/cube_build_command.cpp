// vokcube cube build: making a cube file from tables.
#include <fstream>
#include <iostream>
#include <memory>

#include "cli/cube_making.h"
#include "cli/piped_facts.h"
#include "platform/whole_path.h"

namespace vok::cli {
namespace {

struct BuildOptions {
  MakingOptions making;
  std::string facts;
};

void OpenFacts(Files& files, const std::string& path, olap::BuildRequest& request) {
  if (path.empty()) return;
  const std::string& folder = request.temporary_folder;
  const std::string beside = folder.empty() ? request.output_path : folder + "/facts";
  if (path == "-") {
    request.facts = ReadPiped(files, std::cin, request.facts_name, beside);
  } else if (IsPipe(files, path)) {
    std::ifstream pipe(PathOfUtf8(files.NativePath(path)), std::ios::binary);
    request.facts = ReadPiped(files, pipe, request.facts_name, beside);
  } else {
    request.facts = files.Open(path);
  }
}

void Build(const CommonOptions& common, const BuildOptions& options) {
  const auto session = common.NewSession();
  const Host& host = session->host();
  MakingOptions making = options.making;
  making.request.facts_name = options.facts == "-" ? "standard input" : options.facts;
  MakeCubeFile(*session, making, [&](olap::BuildRequest request, const auto& tell) {
    OpenFacts(host.files, options.facts, request);
    return olap::BuildCubeFile(host.files, host.locale, request, tell);
  });
}

}  // namespace

void AddCubeBuild(CLI::App& cube, const CommonOptions& common) {
  const auto options = std::make_shared<BuildOptions>();
  olap::BuildRequest& request = options->making.request;
  auto* build = cube.add_subcommand("build", "Build a cube file from tables");
  build->add_option("--schema", request.schema_path, "The schema, XML")->required();
  build
      ->add_option("--data", request.data_path,
                   "Folder of CSV files, SQLite database, or database server: "
                   "postgresql://host/database or clickhouse+https://host/database")
      ->required();
  build->add_option("--output", request.output_path, "The cube file to write")->required();
  auto* const live = build->add_flag("--live", request.live,
                                     "Leave the facts in the database: only members are put into "
                                     "the file, and each query asks the server for its sums");
  build
      ->add_option("--facts", options->facts,
                   "CSV file of the fact table's rows, instead of that in the folder; - reads "
                   "them from standard input; a pipe is read once")
      ->excludes(live);
  build->add_option(
      "--separator", request.separator,
      "Between fields of CSV files: , ; | or tab (otherwise as the schema says, or ,)");
  build->add_option("--decimal", request.decimal,
                    "In amounts of CSV files: . or , (otherwise as the schema says, or .)");
  build->add_option("--dates", request.dates,
                    "How CSV files write dates, such as dd.mm.yyyy or m/d/yy; they are read as "
                    "2024-01-31");
  build
      ->add_flag("--group", request.gathered,
                 "Let the database server put facts with equal keys together; worth it where ten "
                 "or more become one")
      ->excludes(live);
  build->add_flag("!--no-source", request.record_source,
                  "Do not record which database server the tables are on; then vokcube cube "
                  "refresh cannot read months anew");
  AddMakingOptions(*build, options->making);
  build->callback([&common, options] { Build(common, *options); });
}

}  // namespace vok::cli
