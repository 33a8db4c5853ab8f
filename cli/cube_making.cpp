#include "cli/cube_making.h"

#include <chrono>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include "cli/output_file.h"
#include "cli/progress_line.h"
#include "cli/stop_on_interrupt.h"
#include "cli/terminal.h"
#include "platform/failure.h"
#include "platform/shown_text.h"
#include "providers/cube/olap/build/refresh_months.h"
#include "providers/cube/olap/storage/cube_file.h"

namespace vok::cli {
namespace {

/// The cube file that a new one is to take the place of.
class OldCube {
 public:
  /// Looks at the file, if there is one.
  OldCube(const Files& files, const std::string& path);

  /// Failure 58 when a cube that has facts here has none in the new file.
  void RefuseEmptied(const olap::BuildReport& made) const;

 private:
  std::string path_;
  std::map<std::string, uint64_t> facts_;  ///< of each cube; none of a damaged file
};

OldCube::OldCube(const Files& files, const std::string& path) : path_(path) {
  if (!files.Exists(path)) return;
  try {
    const auto opened = olap::CubeFile::Open(files, path);
    for (const olap::StoredCube& cube : opened->cubes()) {
      facts_[cube.model.name] = cube.model.fact_count;
    }
  } catch (const Failure&) {  // an empty or damaged one may be replaced by anything
    facts_.clear();
  }
}

void OldCube::RefuseEmptied(const olap::BuildReport& made) const {
  for (const auto& cube : made.cubes) {
    const auto before = facts_.find(cube.name);
    if (cube.facts > 0 || before == facts_.end() || before->second == 0) continue;
    throw Failure(failure_number::kFileExists,
                  "Cannot write \"" + path_ + "\": cube " + cube.name + " has " +
                      std::to_string(before->second) +
                      " facts there and would have none. Nothing was changed. Look into the data, "
                      "or add --allow-empty.");
  }
}

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

void Write(FileReplacement& file, const std::vector<std::string>& rows) {
  std::string text;
  for (const std::string& row : rows) text += OneLine(row) + '\n';
  file.Write(std::as_bytes(std::span(text)));
}

/// The file of bad rows that was asked for, begun before the build; null when none was.
std::unique_ptr<FileReplacement> BeginOutputs(const Host& host, const MakingOptions& options) {
  const olap::BuildRequest& request = options.request;
  std::vector<std::string> used = {request.schema_path, request.data_path, request.facts_name};
  CheckOutput(host, request.output_path, kCubeFile, used);
  if (options.bad_rows.empty()) return nullptr;
  used.push_back(request.output_path);
  return BeginOutput(host, options.bad_rows, kBadRowsList, used);
}

void Tell(const MakingOptions& options, const olap::BuildReport& report) {
  for (const std::string& remark : report.remarks) std::cerr << OneLine(remark) << '\n';
  if (!options.bad_rows.empty()) {
    std::cout << report.bad_rows.size() << " bad rows were left out; " << OneLine(options.bad_rows)
              << " lists them\n";
  }
  for (const auto& cube : report.cubes) {
    std::cout << OneLine(cube.name) << ": " << cube.facts << " facts, ";
    if (cube.is_live) {
      std::cout << "which stay in the database";
    } else {
      std::cout << cube.stored_cells << " stored cells";
    }
    const char* before = "; read anew: ";
    for (const int month : cube.months) {
      std::cout << std::exchange(before, ", ") << olap::ShownMonth(month);
    }
    std::cout << '\n';
  }
}

}  // namespace

void AddMakingOptions(CLI::App& command, MakingOptions& options) {
  command.add_option("--bad-rows", options.bad_rows,
                     "Leave out rows of facts that cannot be read, and list them in this file");
  command
      .add_option("--memory", options.megabytes,
                  "Megabytes that facts may take; more are sorted on the disk (otherwise half "
                  "of what is free)")
      ->check(CLI::Range(16, 1'000'000'000));
  command.add_option("--temp", options.request.temporary_folder,
                     "Folder for facts that are sorted on the disk (otherwise that of the output)");
  command.add_flag("--allow-empty", options.allow_empty,
                   "Let a cube without facts take the place of one that has some");
  command.add_flag("--progress", options.progress,
                   "Tell each 10 seconds how far it is, also where no terminal shows it");
}

void MakeCubeFile(Session& session, const MakingOptions& options, const MakeCube& make) {
  const auto start = std::chrono::steady_clock::now();
  olap::BuildRequest request = options.request;
  constexpr uint64_t kMegabyte = 1'000'000;
  request.memory = options.megabytes > 0 ? options.megabytes * kMegabyte : FreeMemory() / 2;
  QueryStop stop;
  std::optional<StopOnInterrupt> interrupts;
  if (request.data_path.empty() || NamesTableServer(request.data_path)) {
    // Without this the program ends at once, but the server goes on.
    interrupts.emplace(stop);
    request.stop = &stop;
    request.open_server = [&session](const std::string& address, const QueryStop& asked) {
      return session.OpenTables(address, asked);
    };
  }
  const auto bad_rows = BeginOutputs(session.host(), options);
  request.leave_out_bad_rows = bad_rows != nullptr;
  const OldCube old(session.host().files, request.output_path);
  request.check = [&](const olap::BuildReport& made) {
    if (!options.allow_empty) old.RefuseEmptied(made);
    if (bad_rows != nullptr) Write(*bad_rows, made.bad_rows);
  };
  olap::BuildReport report;
  try {
    ProgressLine line(options.progress);
    report = make(request, [&line](const olap::BuildStep& step) {
      line.Show(step.what, step.begin, step.end, step.done);
    });
  } catch (const olap::BadRows& bad) {
    ThrowBadRows(bad, request.leave_out_bad_rows);
  }
  if (bad_rows != nullptr) bad_rows->Commit();
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  Tell(options, report);
  std::cout << OneLine(request.output_path) << ": " << report.file_bytes << " bytes, "
            << static_cast<int>(taken.count() * 1000) << " ms\n";
  for (const CheckedCube& cube : CheckCubes(session.host(), request.output_path)) {
    if (!cube.lacks.empty()) PrintLacks(cube, std::cerr);
  }
}

}  // namespace vok::cli
