// vokcube run: one saved query into a workbook.
#include <algorithm>
#include <iostream>
#include <memory>

#include "cli/command.h"
#include "cli/print.h"
#include "cli/stop_on_interrupt.h"
#include "component/workbook_writer.h"
#include "env/environment.h"
#include "platform/failure.h"
#include "platform/shown_text.h"

namespace vok::cli {
namespace {

struct RunOptions {
  std::string data_source;
  std::string periods;
  std::string output;
  LimitOptions limits;
  bool json = false;
};

std::string MissingMeasures(const Session& session, const Publics& publics) {
  std::string missing;
  for (const auto& money_set : publics.settings.data_source.MoneySets) {
    const auto& known = publics.cube.CubeMeasures;
    const bool found = std::any_of(known.begin() + 1, known.end(), [&](const Value& name) {
      return EqualNoCase(session.host().locale, name.ToText(), money_set.Measure);
    });
    const std::string quoted = "\"" + money_set.Measure + "\"";
    if (!found && missing.find(quoted) == std::string::npos) {
      missing += (missing.empty() ? "" : ", ") + quoted;
    }
  }
  return missing;
}

/// What to do about a code whose message is fixed. The other codes have been explained by a message
/// box on standard error.
std::string Advice(Session& session, int32_t code) {
  const Publics& publics = session.publics();
  const auto& source = publics.settings.data_source;
  switch (code) {
    case failure_number::kDatabaseNotFound:
      return " (" +
             session.host().files.NativePath(SettingsDatabase(publics.environment.SettingsFolder)) +
             "; make it with vokcube settings import, or name another folder with "
             "--settings-folder)";
    case failure_number::kInvalidMeasure:
      return " (cube " + source.CubeName + " of " + source.CubeFile + " has no measure " +
             MissingMeasures(session, publics) + "; see vokcube cube info)";
    case failure_number::kItemNotFound:
    case failure_number::kSyntax:
      return " (vokcube cube check \"" + source.CubeFile + "\" lists all that the cube lacks)";
    default:
      return {};
  }
}

/// What stands at the output path though this run put nothing there.
std::string OldWorkbookText(const Files& files, const std::string& path) {
  try {
    return files.Exists(path) ? "; " + path + " is that of an earlier run" : "";
  } catch (const Failure&) {  // what failed before is the thing to tell
    return {};
  }
}

std::string FailureText(const RunReport& report, const std::string& known) {
  if (report.stopped) return "The query was stopped before its end; nothing was written";
  if (report.whole)
    return "The run failed as reported above, after " + report.workbook + " was whole";
  return known.empty() ? "The query failed as reported above; no workbook was completed" : known;
}

Failure ResultFailure(Session& session, const Value::Array& result, const RunOptions& options) {
  const int32_t code = result.at(0).ToInt32();
  const RunReport& report = session.publics().last_run;
  std::string text = FailureText(report, result.at(1).ToText()) + Advice(session, code);
  if (!report.whole) text += OldWorkbookText(session.host().files, WorkbookPath(options.output));
  return Failure(code, text);
}

/// Why a run that went well left no workbook.
NothingWritten NoWorkbook(Session& session, const RunOptions& options) {
  const Publics& publics = session.publics();
  const CubeState& cube = publics.cube;
  return NothingWritten("No workbook: " +
                        (publics.last_run.queries > 0
                             ? std::string("the cube has no facts for what was asked")
                             : "no period meets the cube's dates " + IsoDate(cube.FirstDate) +
                                   " to " + IsoDate(cube.LastDate)) +
                        OldWorkbookText(session.host().files, WorkbookPath(options.output)));
}

Json Document(const RunReport& report) {
  return {{"workbook", report.workbook},
          {"rows", report.rows},
          {"milliseconds",
           {{"settings", report.settings},
            {"cube", report.cube},
            {"mdx", report.mdx},
            {"grid", report.grid},
            {"workbook", report.writing},
            {"total", report.total}}}};
}

void Print(const RunReport& report) {
  if (!report.workbook.empty()) {
    std::cout << "Workbook  " << OneLine(report.workbook) << '\n'
              << "Rows      " << report.rows << '\n';
  }
  std::cout << "Time      settings " << report.settings << " ms, cube " << report.cube
            << " ms, MDX " << report.mdx << " ms, grid " << report.grid << " ms, workbook "
            << report.writing << " ms; in all " << report.total << " ms\n";
}

Value RunStoppable(Session& session, RunOptions& options) {
  QueryStop stop;
  const StopOnInterrupt interrupt(stop);
  session.publics().stop = &stop;
  session.publics().keep_old_workbook = true;
  session.publics().cube_limits = options.limits.ConnectionText();
  Value result = session.me().RunQuery(options.data_source, options.periods, options.output);
  session.publics().stop = nullptr;
  return result;
}

void Run(const CommonOptions& common, RunOptions& options) {
  const auto session = common.NewSession();
  FindFolder(*session);
  options.output = OutputPath(session->host().files, options.output);
  const Value result = RunStoppable(*session, options);
  const auto& parts = *result.As<Value::Array>();
  if (parts.size() == 2) throw ResultFailure(*session, parts, options);

  const Publics& publics = session->publics();
  if (options.json) {
    std::cout << JsonText(Document(publics.last_run));
  } else {
    Print(publics.last_run);
  }
  if (publics.last_run.workbook.empty()) throw NoWorkbook(*session, options);
}

/// What is wrong with an output path; "" for nothing.
std::string NamesFile(const std::string& path) {
  return path.empty() || path.ends_with('/') || path.ends_with('\\')
             ? "names no file, only a folder"
             : "";
}

}  // namespace

void AddRunCommand(CLI::App& app, const CommonOptions& common) {
  const auto options = std::make_shared<RunOptions>();
  auto* command = app.add_subcommand("run", "Run a saved query into a workbook");
  command->add_option("--data-source", options->data_source, "Name of the data-source setting")
      ->required();
  command->add_option("--periods", options->periods, "Name of the period set")->required();
  command
      ->add_option("--output", options->output,
                   "The workbook's path; \".xlsX\" is added where it has no such ending")
      ->required()
      ->check(NamesFile, "", "");
  options->limits.AddTo(*command);
  command->add_flag("--json", options->json, "Print one JSON document");
  command->callback([&common, options] { Run(common, *options); });
}

}  // namespace vok::cli
