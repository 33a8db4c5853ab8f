// vokcube mdx: any query on a cube.
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

#include "cli/cellset_print.h"
#include "cli/command.h"

namespace vok::cli {
namespace {

struct MdxOptions {
  std::string source;
  std::string catalog;
  std::string format = "table";
  std::string query;
};

std::string ReadStandardInput() {
  return std::string(std::istreambuf_iterator<char>(std::cin), {});
}

void Mdx(const CommonOptions& common, const MdxOptions& options) {
  const auto session = common.NewSession();
  CubeServices& cube = session->host().cube;
  const auto connection = cube.NewConnection();
  std::string text = "Provider=MSOLAP;Data Source=" + options.source;
  if (!options.catalog.empty()) text += ";Initial Catalog=[" + options.catalog + "]";
  connection->SetConnectionString(text);
  connection->Open("", "", "", kUnspecifiedOptions);

  const auto cellset = cube.NewCellset();
  cellset->SetActiveConnection(*connection);
  cellset->SetSource(options.query == "-" ? ReadStandardInput() : options.query);
  cellset->Open();
  if (options.format == "json") {
    PrintJson(*cellset, std::cout);
  } else if (options.format == "csv") {
    PrintCsv(*cellset, std::cout);
  } else {
    PrintTable(*cellset, std::cout);
  }
}

}  // namespace

void AddMdxCommand(CLI::App& app, const CommonOptions& common) {
  const auto options = std::make_shared<MdxOptions>();
  auto* command = app.add_subcommand("mdx", "Run an MDX query on a cube");
  command->add_option("SOURCE", options->source, "The cube file")->required();
  command->add_option("QUERY", options->query, "The query; - reads it from standard input")
      ->required();
  command->add_option("--catalog", options->catalog, "The catalog, where the source has several");
  command->add_option("--format", options->format, "table, csv or json")
      ->check(CLI::IsMember({"table", "csv", "json"}));
  command->callback([&common, options] { Mdx(common, *options); });
}

}  // namespace vok::cli
