// vokcube cube build: making a cube file from tables.
#include <chrono>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <optional>

#include "cli/command.h"
#include "cli/piped_facts.h"
#include "cli/progress_line.h"
#include "cli/stop_on_interrupt.h"
#include "cli/terminal.h"
#include "platform/failure.h"
#include "platform/shown_text.h"
#include "platform/whole_path.h"
#include "providers/cube/olap/build/build_cube.h"
#include "providers/cube/olap/storage/cube_file.h"
#include "providers/cube/olap/storage/format.h"

namespace vok::cli {
namespace {

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
  throw Failure(failure_number::kFileExists, "Cannot write \"" + path + "\": " + why);
}

/// The cube file that a new one is to take the place of.
class OldCube {
 public:
  /// Looks at the file, if there is one. Failure 58 for a file that is neither a cube's nor empty:
  /// a mistyped name must not cost another file.
  OldCube(const Files& files, const std::string& path);

  /// Failure 58 when a cube that has facts here has none in the new file.
  void RefuseEmptied(const olap::BuildReport& made) const;

 private:
  std::string path_;
  std::map<std::string, uint64_t> facts_;  ///< of each cube; none of a damaged file
};

OldCube::OldCube(const Files& files, const std::string& path) : path_(path) {
  if (!files.Exists(path)) return;
  const std::string begin = ReadBeginning(files, path, olap::kFileMagic.size());
  if (begin.empty()) return;
  if (begin != std::string(olap::kFileMagic.begin(), olap::kFileMagic.end())) {
    Refuse(path, "the file there is not a cube. Give another name, or delete it first.");
  }
  try {
    const auto opened = olap::CubeFile::Open(files, path);
    for (const olap::StoredCube& cube : opened->cubes()) {
      facts_[cube.model.name] = cube.model.fact_count;
    }
  } catch (const Failure&) {  // a damaged one may be replaced by anything
    facts_.clear();
  }
}

void OldCube::RefuseEmptied(const olap::BuildReport& made) const {
  for (const auto& cube : made.cubes) {
    const auto before = facts_.find(cube.name);
    if (cube.facts > 0 || before == facts_.end() || before->second == 0) continue;
    Refuse(path_, "cube " + cube.name + " has " + std::to_string(before->second) +
                      " facts there and would have none. Nothing was changed. Look into the data, "
                      "or add --allow-empty.");
  }
}

struct BuildOptions {
  olap::BuildRequest request;
  std::string facts;
  std::string bad_rows;
  uint64_t megabytes = 0;
  bool allow_empty = false;
  bool progress = false;
};

/// Each on a line of its own; one alone is the failure.
[[noreturn]] void ThrowBadRows(const olap::BadRows& bad, bool are_left_out) {
  if (bad.rows().size() == 1) {
    throw Failure(bad.number(), bad.rows()[0] + "; mend it, or leave it out with --bad-rows FILE");
  }
  for (const std::string& row : bad.rows()) std::cerr << OneLine(row) << '\n';
  throw Failure(bad.number(),
                are_left_out ? "Too many rows cannot be read to leave them out; these are the "
                               "first. Does the schema describe these tables?"
                             : "These rows cannot be read, and there may be more. Mend them, or "
                               "leave out all such rows with --bad-rows FILE, which lists them");
}

std::string Lines(const std::vector<std::string>& rows) {
  std::string text;
  for (const std::string& row : rows) text += OneLine(row) + '\n';
  return text;
}

void OpenFacts(Files& files, const std::string& path, olap::BuildRequest& request) {
  if (path.empty()) return;
  const std::string& folder = request.temporary_folder;
  const std::string beside = folder.empty() ? request.output_path : folder + "/facts";
  request.facts_name = path == "-" ? "standard input" : path;
  if (path == "-") {
    request.facts = ReadPiped(files, std::cin, beside);
  } else if (IsPipe(files, path)) {
    std::ifstream pipe(PathOfUtf8(files.NativePath(path)), std::ios::binary);
    request.facts = ReadPiped(files, pipe, beside);
  } else {
    request.facts = files.Open(path);
  }
}

void Build(const CommonOptions& common, const BuildOptions& options) {
  const auto session = common.NewSession();
  const auto start = std::chrono::steady_clock::now();
  olap::BuildRequest request = options.request;
  OpenFacts(session->host().files, options.facts, request);
  constexpr uint64_t kMegabyte = 1'000'000;
  request.memory = options.megabytes > 0 ? options.megabytes * kMegabyte : FreeMemory() / 2;
  QueryStop stop;
  std::optional<StopOnInterrupt> interrupts;
  if (NamesTableServer(request.data_path)) {
    // Without this the program ends at once, but the server goes on.
    interrupts.emplace(stop);
    request.stop = &stop;
    request.open_server = [&session](const std::string& address, const QueryStop& asked) {
      return session->OpenTables(address, asked);
    };
  }
  request.leave_out_bad_rows = !options.bad_rows.empty();
  const OldCube old(session->host().files, request.output_path);
  if (!options.allow_empty) {
    request.check = [&old](const olap::BuildReport& made) { old.RefuseEmptied(made); };
  }
  olap::BuildReport report;
  try {
    ProgressLine line(options.progress);
    report = olap::BuildCubeFile(session->host().files, session->host().locale, request,
                                 [&line](const olap::BuildStep& step) {
                                   line.Show(step.what, step.begin, step.end, step.done);
                                 });
  } catch (const olap::BadRows& bad) {
    ThrowBadRows(bad, request.leave_out_bad_rows);
  }
  for (const std::string& remark : report.remarks) std::cerr << OneLine(remark) << '\n';
  if (request.leave_out_bad_rows) {
    WriteWholeFile(session->host().files, options.bad_rows, Lines(report.bad_rows));
    std::cout << report.bad_rows.size() << " bad rows were left out; " << OneLine(options.bad_rows)
              << " lists them\n";
  }
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  for (const auto& cube : report.cubes) {
    std::cout << OneLine(cube.name) << ": " << cube.facts << " facts, " << cube.stored_cells
              << " stored cells\n";
  }
  std::cout << OneLine(request.output_path) << ": " << report.file_bytes << " bytes, "
            << static_cast<int>(taken.count() * 1000) << " ms\n";
  for (const CheckedCube& cube : CheckCubes(session->host(), request.output_path)) {
    if (!cube.lacks.empty()) PrintLacks(cube, std::cerr);
  }
}

}  // namespace

void AddCubeBuild(CLI::App& cube, const CommonOptions& common) {
  const auto options = std::make_shared<BuildOptions>();
  olap::BuildRequest& request = options->request;
  auto* build = cube.add_subcommand("build", "Build a cube file from tables");
  build->add_option("--schema", request.schema_path, "The schema, XML")->required();
  build
      ->add_option("--data", request.data_path,
                   "Folder of CSV files, SQLite database, or database server: "
                   "postgresql://host/database or clickhouse+https://host/database")
      ->required();
  build->add_option("--output", request.output_path, "The cube file to write")->required();
  build->add_option("--facts", options->facts,
                    "CSV file of the fact table's rows, instead of that in the folder; - reads "
                    "them from standard input; a pipe is read once");
  build->add_option(
      "--separator", request.separator,
      "Between fields of CSV files: , ; | or tab (otherwise as the schema says, or ,)");
  build->add_option("--decimal", request.decimal,
                    "In amounts of CSV files: . or , (otherwise as the schema says, or .)");
  build->add_option("--dates", request.dates,
                    "How CSV files write dates, such as dd.mm.yyyy or m/d/yy; they are read as "
                    "2024-01-31");
  build->add_option("--bad-rows", options->bad_rows,
                    "Leave out rows of facts that cannot be read, and list them in this file");
  build
      ->add_option("--memory", options->megabytes,
                   "Megabytes that facts may take; more are sorted on the disk (otherwise half "
                   "of what is free)")
      ->check(CLI::Range(16, 1'000'000'000));
  build->add_option("--temp", request.temporary_folder,
                    "Folder for facts that are sorted on the disk (otherwise that of the output)");
  build->add_flag("--allow-empty", options->allow_empty,
                  "Let a cube without facts take the place of one that has some");
  build->add_flag("--progress", options->progress,
                  "Tell each 10 seconds how far it is, also where no terminal shows it");
  build->callback([&common, options] { Build(common, *options); });
}

}  // namespace vok::cli
