// vokcube cube check: what a cube lacks for saved queries.
#include <iostream>
#include <memory>

#include "cli/command.h"
#include "cli/print.h"
#include "cli/progress_line.h"
#include "cube/requirements.h"
#include "platform/failure.h"
#include "platform/shown_text.h"

namespace vok::cli {
namespace {

struct CheckOptions {
  std::string source;
  std::string catalog;
  bool json = false;
};

Json Document(const std::vector<CheckedCube>& cubes) {
  Json list = Json::array();
  for (const CheckedCube& cube : cubes) {
    Json lacks = Json::array();
    for (const CubeLack& lack : cube.lacks) {
      lacks.push_back({{"what", lack.what}, {"schema", lack.mend}});
    }
    list.push_back({{"name", cube.name}, {"lacks", std::move(lacks)}});
  }
  return {{"cubes", std::move(list)}};
}

/// A cube that lacks something is a failure, so that scripts see it.
void Check(const CommonOptions& common, const CheckOptions& options) {
  const auto session = common.NewSession();
  const auto cubes = CheckCubes(session->host(), options.source, options.catalog);
  if (options.json) std::cout << JsonText(Document(cubes));
  std::size_t lacking = 0;
  for (const CheckedCube& cube : cubes) {
    if (!cube.lacks.empty()) ++lacking;
    if (options.json) continue;
    if (cube.lacks.empty()) {
      std::cout << "Cube " << OneLine(cube.name) << " has all that saved queries need\n";
    } else {
      PrintLacks(cube, std::cout);
    }
  }
  if (lacking == 0) return;
  throw Failure(failure_number::kItemNotFound,
                std::to_string(lacking) + " of " + std::to_string(cubes.size()) + " cubes in " +
                    options.source +
                    " lack what saved queries need; docs/your-own-cube.md says why");
}

}  // namespace

std::vector<CheckedCube> CheckCubes(const Host& host, const std::string& source,
                                    const std::string& catalog) {
  const ProgressLine line(false, "looking into " + source);
  std::vector<std::string> names{catalog};
  if (catalog.empty()) names = host.cube.Connect(CubeText(source), nullptr)->CatalogNames();
  std::vector<CheckedCube> cubes;
  for (const std::string& name : names) {
    const auto connection = host.cube.Connect(CubeText(source, name), nullptr);
    cubes.push_back({name, FindLacks(host.locale, *connection, name)});
  }
  return cubes;
}

void PrintLacks(const CheckedCube& cube, std::ostream& out) {
  out << "Cube " << OneLine(cube.name) << " lacks what saved queries need:\n";
  for (const CubeLack& lack : cube.lacks) {
    out << "- " << OneLine(lack.what) << "\n  Schema: " << OneLine(lack.mend) << '\n';
  }
}

void AddCubeCheck(CLI::App& cube, const CommonOptions& common) {
  const auto options = std::make_shared<CheckOptions>();
  auto* check = cube.add_subcommand("check", "List what a cube lacks for saved queries");
  check->add_option("SOURCE", options->source, "The cube file, or a cube server's address")
      ->required();
  check->add_option("--catalog", options->catalog, "The catalog (otherwise all of them)");
  check->add_flag("--json", options->json, "Print one JSON document");
  check->callback([&common, options] { Check(common, *options); });
}

}  // namespace vok::cli
