// vokcube mdx: any query on a cube.
#include <iostream>
#include <memory>
#include <string>

#include "cli/cellset_print.h"
#include "cli/command.h"
#include "cli/print.h"
#include "cli/progress_line.h"
#include "cli/stop_on_interrupt.h"
#include "platform/failure.h"

namespace vok::cli {
namespace {

struct MdxOptions {
  std::string source;
  std::string catalog;
  std::string format = "table";
  std::string query;
  LimitOptions limits;
};

std::string ConnectionText(const MdxOptions& options) {
  std::string text = "Provider=MSOLAP;Data Source=" + options.source;
  if (!options.catalog.empty()) text += ";Initial Catalog=[" + options.catalog + "]";
  return text + ";" + options.limits.ConnectionText();
}

/// Ctrl-C ends the connecting as well as the query.
std::unique_ptr<Cellset> Ask(CubeProvider& cube, const MdxOptions& options,
                             const std::string& query) {
  QueryStop stop;
  const StopOnInterrupt interrupt(stop);
  const ProgressLine line(false, "asking the cube");
  const auto connection = cube.Connect(ConnectionText(options), &stop);
  stop.Check();
  try {
    return connection->Execute(query);
  } catch (const Failure& failure) {
    if (failure.number() != failure_number::kSyntax) throw;
    throw Failure(failure.number(), failure.description() +
                                        "; docs/mdx.md has the language, vokcube cube info " +
                                        Quoted(options.source) + " the names");
  }
}

void Mdx(const CommonOptions& common, const MdxOptions& options) {
  const auto session = common.NewSession();
  const auto cellset = Ask(session->host().cube, options,
                           options.query == "-" ? ReadStandardInput() : options.query);
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
  command->add_option("SOURCE", options->source, "The cube file, or a cube server's address")
      ->required();
  command->add_option("QUERY", options->query, "The query; - reads it from standard input")
      ->required();
  command->add_option("--catalog", options->catalog, "The catalog, where the source has several");
  command->add_option("--format", options->format, "table, csv or json")
      ->check(CLI::IsMember({"table", "csv", "json"}));
  options->limits.AddTo(*command);
  command->callback([&common, options] { Mdx(common, *options); });
}

}  // namespace vok::cli
