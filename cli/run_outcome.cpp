#include "cli/run_outcome.h"

#include <algorithm>
#include <array>

#include "component/workbook_writer.h"
#include "cube/requirements.h"
#include "platform/failure.h"
#include "platform/shown_text.h"
#include "settings/settings_database.h"

namespace vok::cli {
namespace {

/// What to do about the failure of a run.
std::string Advice(const Publics& publics) {
  switch (publics.last_run.code) {
    case failure_number::kDatabaseNotFound:
      return "; make it with vokcube settings import, or name another folder with "
             "--settings-folder";
    case failure_number::kInvalidMeasure:
      return "; see vokcube cube info";
    case failure_number::kSettingsUnreadable:
      return "; vokcube info lists the saved sets";
    default:
      break;
  }
  if (!CubeMayLackSomething(publics.last_run.code)) return {};
  return "; vokcube cube check \"" + publics.settings.data_source.CubeFile +
         "\" tells what the cube lacks, if anything";
}

/// What stands at the output path though this run put nothing there.
std::string OldWorkbookText(const Files& files, const std::string& path) {
  try {
    if (!files.Exists(path)) return {};
    files.Open(path);  // fails for a pipe or a device, which is not of a run
    return "; " + path + " is that of an earlier run";
  } catch (const Failure&) {  // what failed before is the thing to tell
    return {};
  }
}

std::string WithoutPeriod(std::string text) {
  if (text.ends_with('.')) text.pop_back();
  return text;
}

std::string FailureText(const Publics& publics, const std::string& known) {
  const RunReport& report = publics.last_run;
  if (report.stopped) return "The query was stopped before its end; nothing was written";
  const std::string cause = WithoutPeriod(report.cause);
  if (report.whole) return "The run failed after " + report.workbook + " was whole: " + cause;
  const std::string advice = Advice(publics);
  if (known.empty()) return cause + advice + "; no workbook was completed";
  return known + (cause.empty() ? "" : " (" + cause + advice + ")");
}

/// Why a run that went well left no workbook.
std::string NoWorkbookText(const Publics& publics) {
  const CubeState& cube = publics.cube;
  return "No workbook: " + (publics.last_run.queries > 0
                                ? std::string("the cube has no facts for what was asked")
                                : "no period meets the cube's dates " + IsoDate(cube.FirstDate) +
                                      " to " + IsoDate(cube.LastDate));
}

std::string OutcomeText(const Session& session, const Publics& publics, const Value::Array& parts,
                        const std::string& output) {
  const RunReport& report = publics.last_run;
  std::string text = report.cause;
  if (parts.size() == 2) {
    text = FailureText(publics, parts[1].ToText());
  } else if (report.workbook.empty()) {
    text = NoWorkbookText(publics);
  }
  const bool is_old = parts.size() == 2 ? !report.whole : report.workbook.empty();
  return is_old ? text + OldWorkbookText(session.host().files, WorkbookPath(output)) : text;
}

void Run(Session& session, const std::string& limits, const QueryStop& stop, RunOutcome& outcome) {
  CheckSetName(kDataSourceWords, outcome.request.data_source);
  CheckSetName(kPeriodSetWords, outcome.request.periods);
  FindFolder(session);
  RunRequest request = outcome.request;
  request.output = OutputPath(session.host().files, request.output);
  Publics& publics = session.publics();
  publics.stop = &stop;
  publics.keep_old_workbook = true;
  publics.cube_limits = limits;
  const Value result = session.me().RunQuery(request.data_source, request.periods, request.output);
  publics.stop = nullptr;
  const auto& parts = *result.As<Value::Array>();
  outcome.code = parts.size() == 2 ? parts[0].ToInt32() : 0;
  if (outcome.code != 0 && stop.asked() && !publics.last_run.whole) {  // a wait was cut short, too
    publics.last_run.stopped = true;
    outcome.code = kQueryCancelled;
  }
  outcome.text = OutcomeText(session, publics, parts, request.output);
  outcome.report = publics.last_run;
}

}  // namespace

RunOutcome RunSaved(Session& session, const RunRequest& request, const std::string& limits,
                    const QueryStop& stop) {
  RunOutcome outcome{.request = request, .text = {}, .report = {}};
  try {
    Run(session, limits, stop, outcome);
  } catch (...) {
    const Failure failure = CurrentFailure();
    outcome.code = failure.number();
    outcome.text = failure.description();
  }
  outcome.text = WithoutUsers(outcome.text);
  return outcome;
}

std::string WorkbookOf(const Files& files, const RunRequest& request) {
  try {
    return WorkbookPath(OutputPath(files, request.output));
  } catch (const Failure&) {  // the run itself will tell
    return WorkbookPath(request.output);
  }
}

std::string NamesFile(const std::string& path) {
  return path.empty() || path.ends_with('/') || path.ends_with('\\')
             ? "names no file, only a folder; name the workbook in it"
             : "";
}

int ExitStatus(const RunOutcome& outcome) {
  if (outcome.code == kQueryCancelled) return kInterrupted;
  if (outcome.code != 0) return kFailed;
  return outcome.report.workbook.empty() ? kNothingWritten : 0;
}

int WorseStatus(int a, int b) {
  constexpr std::array kOrder = {0, kNothingWritten, kFailed, kInterrupted};
  return std::max(a, b, [&](int x, int y) {
    return std::find(kOrder.begin(), kOrder.end(), x) < std::find(kOrder.begin(), kOrder.end(), y);
  });
}

Json Document(const RunOutcome& outcome) {
  const RunReport& report = outcome.report;
  return {{"workbook", report.workbook},
          {"rows", report.rows},
          {"milliseconds",
           {{"settings", report.settings},
            {"cube", report.cube},
            {"mdx", report.mdx},
            {"grid", report.grid},
            {"workbook", report.writing},
            {"total", report.total}}},
          {"code", outcome.code},
          {"cause", outcome.text}};
}

std::string LogLine(const RunOutcome& outcome, Date now) {
  const RunReport& report = outcome.report;
  std::string line = IsoDateTime(now) + " " + std::to_string(outcome.code) + " " +
                     Quoted(outcome.request.data_source) + " " + Quoted(outcome.request.periods);
  if (!report.workbook.empty()) {
    line += " " + report.workbook + ", " + std::to_string(report.rows) + " rows, " +
            std::to_string(report.total) + " ms";
  }
  return OneLine(outcome.text.empty() ? line : line + " " + outcome.text) + "\n";
}

}  // namespace vok::cli
