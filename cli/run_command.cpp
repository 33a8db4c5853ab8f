// vokcube run: saved queries into workbooks.
#include <algorithm>
#include <iostream>
#include <memory>
#include <utility>
#include <vector>

#include "cli/command.h"
#include "cli/jobs_document.h"
#include "cli/output_file.h"
#include "cli/print.h"
#include "cli/progress_line.h"
#include "cli/run_jobs.h"
#include "cli/run_outcome.h"
#include "cli/stop_on_interrupt.h"
#include "env/environment.h"
#include "platform/failure.h"
#include "platform/shown_text.h"

namespace vok::cli {
namespace {

struct RunOptions {
  RunRequest request;
  std::string jobs;
  std::size_t threads = 0;
  LimitOptions limits;
  std::string log;
  bool json = false;
  bool quiet = false;
  bool progress = false;
};

/// Prints what the outcome of a run will not tell.
class OtherMessageBoxes : public MessageBoxes {
 public:
  MessageAnswer Show(const MessageBox& box) override {
    if (std::exchange(is_noted_, false)) return MessageAnswer::kOk;
    return console_.Show(box);
  }
  void Note(const Failure&) override { is_noted_ = true; }

 private:
  ConsoleMessageBoxes console_{stderr};
  bool is_noted_ = false;
};

void Print(const RunReport& report) {
  if (!report.workbook.empty()) {
    std::cout << "Workbook  " << OneLine(report.workbook) << '\n'
              << "Rows      " << report.rows << '\n';
  }
  std::cout << "Time      settings " << report.settings << " ms, cube " << report.cube
            << " ms, MDX " << report.mdx << " ms, grid " << report.grid << " ms, workbook "
            << report.writing << " ms; in all " << report.total << " ms\n";
}

void Print(const RunOutcome& outcome, const RunOptions& options) {
  const bool is_good = ExitStatus(outcome) == 0;
  if (options.json && !(is_good && options.quiet)) {
    std::cout << JsonText(Document(outcome));
  } else if (outcome.code == 0 && !options.quiet) {
    Print(outcome.report);
  }
  if (is_good && !outcome.text.empty()) std::cerr << OneLine(outcome.text) << '\n';
}

/// Nobody wants to hear after the runs that their log cannot be written.
void CheckLog(Session& session, const RunOptions& options,
              const std::vector<RunRequest>& requests) {
  if (options.log.empty()) return;
  const Host& host = session.host();
  std::vector<std::string> used = {options.jobs};
  try {
    FindFolder(session);
    used.push_back(SettingsDatabase(session.publics().environment.SettingsFolder));
  } catch (const Failure&) {  // each run will fail with it, and the log will tell
  }
  for (const RunRequest& request : requests) used.push_back(WorkbookOf(host.files, request));
  CheckOutput(host, options.log, kRunLog, used);
  host.files.Append(options.log, "");
}

/// Adds the outcome to the log that was asked for.
void Log(Session& session, const RunOptions& options, const RunOutcome& outcome) {
  if (options.log.empty()) return;
  session.host().files.Append(options.log, LogLine(outcome, session.host().clock.Now()));
}

/// A log that must not be written is left out of the options.
RunOutcome OutcomeOfOne(Session& session, RunOptions& options, const QueryStop& stop) {
  try {
    CheckLog(session, options, {options.request});
  } catch (const Failure& failure) {
    options.log.clear();
    return {options.request, failure.number(), failure.description(), {}};
  }
  ProgressLine line(options.progress);
  session.publics().on_step = [&line](const RunStep& step) {
    line.Show(step.name, step.begin, step.end, 0);
  };
  return RunSaved(session, options.request, options.limits.ConnectionText(), stop);
}

void RunOne(const CommonOptions& common, RunOptions options) {
  OtherMessageBoxes boxes;
  QueryStop stop;
  const auto session =
      common.NewSession({.message_boxes = &boxes, .is_command = true, .stop = &stop});
  const StopOnInterrupt interrupt(stop);
  const RunOutcome outcome = OutcomeOfOne(*session, options, stop);
  Print(outcome, options);
  Log(*session, options, outcome);
  if (outcome.code != 0) throw Failure(outcome.code, outcome.text);
  if (outcome.report.workbook.empty()) throw NothingWritten(outcome.text);
}

std::string ReadJobs(const Files& files, const std::string& path) {
  return path == "-" ? ReadStandardInput() : ReadWholeFile(files, path);
}

/// On one line, with the names of the run before what became of it.
std::string JobLine(const RunOutcome& outcome) {
  Json line{{"dataSource", outcome.request.data_source},
            {"periods", outcome.request.periods},
            {"output", outcome.request.output}};
  line.update(Document(outcome));
  return OneLine(line.dump(-1, ' ', false, Json::error_handler_t::replace)) + '\n';
}

void PrintNow(const std::string& line) {
  if (std::cout << line << std::flush) return;
  throw Failure(failure_number::kDeviceError,
                "Standard output could not be written; the runs that had not begun were left out");
}

/// What the runs of one call came to.
class Tally {
 public:
  Tally(std::size_t count, bool progress_on_pipe) : count_(count), line_(progress_on_pipe) {
    Tell();
  }

  void Add(int status) {
    status_ = WorseStatus(status_, status);
    failed_ += status == 0 ? 0 : 1;
    ++over_;
    Tell();
  }
  void ThrowUnlessGood() const {
    if (status_ == 0) return;
    throw EndWith(status_, std::to_string(failed_) + " of " + std::to_string(count_) +
                               " runs left no workbook, as their lines say");
  }

 private:
  void Tell() {
    const auto all = static_cast<double>(std::max<std::size_t>(count_, 1));
    const auto over = static_cast<double>(over_);
    line_.Show(std::to_string(over_) + " of " + std::to_string(count_) + " runs", 0, 1, over / all);
  }

  std::size_t count_;
  std::size_t over_ = 0;
  std::size_t failed_ = 0;
  int status_ = 0;
  ProgressLine line_;
};

void RunAll(const CommonOptions& common, const RunOptions& options) {
  const auto session = common.NewSession();
  FindFolder(*session);
  const Host& host = session->host();
  const std::string origin = options.jobs == "-" ? "standard input" : options.jobs;
  const auto requests = ParseJobs(host, ReadJobs(host.files, options.jobs), origin);
  CheckLog(*session, options, requests);
  QueryStop stop;
  const StopOnInterrupt interrupt(stop);
  Tally tally(requests.size(), options.progress);
  const auto new_session = [&](MessageBoxes& boxes) {
    return common.NewSession({.message_boxes = &boxes,
                              .is_command = true,
                              .keep_open = true,
                              .stop = &stop,
                              .cube_files = &session->cube_files()});
  };
  const auto ended = [&](const RunOutcome& outcome) {
    const int status = ExitStatus(outcome);
    tally.Add(status);
    Log(*session, options, outcome);  // first: standard output may be a pipe that nobody reads
    if (status != 0 || !options.quiet) PrintNow(JobLine(outcome));
  };
  RunJobs({requests, options.limits.ConnectionText(), options.threads, new_session, ended}, stop);
  tally.ThrowUnlessGood();
}

void Run(const CommonOptions& common, const RunOptions& options) {
  if (options.jobs.empty()) {
    RunOne(common, options);
  } else {
    RunAll(common, options);
  }
}

}  // namespace

void AddRunCommand(CLI::App& app, const CommonOptions& common) {
  const auto options = std::make_shared<RunOptions>();
  auto* command = app.add_subcommand("run", "Run saved queries into workbooks");
  RunRequest& request = options->request;
  const std::vector one = {
      command->add_option("--data-source", request.data_source, "Name of the data-source setting"),
      command->add_option("--periods", request.periods, "Name of the period set"),
      command->add_option("--output", request.output,
                          "The workbook's path; \".xlsX\" is added where it has no such ending")};
  one.back()->check(NamesFile, "", "");
  auto* many = command->add_option("--jobs", options->jobs,
                                   "File of runs instead, \"-\" for standard input: "
                                   "[{\"dataSource\": …, \"periods\": …, \"output\": …}, …]");
  for (auto* option : one) many->excludes(option);
  command
      ->add_option(
          "--threads", options->threads,
          "Runs at a time; else four for each core: a run waits for the disk most of its time")
      ->check(CLI::Range(1, 1024))
      ->needs(many);
  options->limits.AddTo(*command);
  command->add_option("--log", options->log, "File to which a line for each run is added");
  command->add_flag("--quiet", options->quiet, "Print nothing about runs that went well");
  command->add_flag("--progress", options->progress,
                    "Tell each 10 seconds how far it is, also where no terminal shows it");
  command->add_flag("--json", options->json, "Print one JSON document, of a failure too");
  command->callback([&common, options, one, many] {
    for (const auto* option : one) {
      if (many->empty() && option->empty()) throw CLI::RequiredError(option->get_name());
    }
    Run(common, *options);
  });
}

}  // namespace vok::cli
