// vokcube mdx: any query on a cube.
#include <atomic>
#include <csignal>
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
  std::string max_cells;
  std::string timeout;
};

/// While it lives, Ctrl-C ends the query on the connection, and a second one the program. Where
/// interrupts are ignored they stay so.
class CancelOnInterrupt {
 public:
  explicit CancelOnInterrupt(CubeConnection& connection) {
    connection_ = &connection;
    before_ = std::signal(SIGINT, Cancel);
    if (before_ == SIG_IGN) std::signal(SIGINT, SIG_IGN);
  }
  ~CancelOnInterrupt() {
    std::signal(SIGINT, before_);
    connection_ = nullptr;
  }
  CancelOnInterrupt(const CancelOnInterrupt&) = delete;
  CancelOnInterrupt& operator=(const CancelOnInterrupt&) = delete;

 private:
  static void Cancel(int) {
    std::signal(SIGINT, SIG_DFL);
    if (CubeConnection* connection = connection_) connection->Cancel();
  }

  static inline std::atomic<CubeConnection*> connection_ = nullptr;
  void (*before_)(int) = SIG_DFL;
};

std::string ReadStandardInput() {
  return std::string(std::istreambuf_iterator<char>(std::cin), {});
}

std::string ConnectionText(const MdxOptions& options) {
  std::string text = "Provider=MSOLAP;Data Source=" + options.source;
  if (!options.catalog.empty()) text += ";Initial Catalog=[" + options.catalog + "]";
  if (!options.max_cells.empty()) text += ";Max Cells=" + options.max_cells;
  if (!options.timeout.empty()) text += ";Timeout=" + options.timeout;
  return text;
}

void RunQuery(CubeConnection& connection, Cellset& cellset) {
  const CancelOnInterrupt cancel(connection);
  cellset.Open();
}

void Mdx(const CommonOptions& common, const MdxOptions& options) {
  const auto session = common.NewSession();
  CubeServices& cube = session->host().cube;
  const auto connection = cube.NewConnection();
  connection->SetConnectionString(ConnectionText(options));
  connection->Open("", "", "", kUnspecifiedOptions);

  const auto cellset = cube.NewCellset();
  cellset->SetActiveConnection(*connection);
  cellset->SetSource(options.query == "-" ? ReadStandardInput() : options.query);
  RunQuery(*connection, *cellset);
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
  command->add_option("--max-cells", options->max_cells,
                      "Most cells of the answer before NON EMPTY, and most tuples of a set");
  command->add_option("--timeout", options->timeout, "Most seconds that the query may take");
  command->callback([&common, options] { Mdx(common, *options); });
}

}  // namespace vok::cli
