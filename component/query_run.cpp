#include "component/query_run.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "component/result_grid.h"
#include "component/run_cause.h"
#include "component/step_timer.h"
#include "component/workbook_look.h"
#include "cube/connection.h"
#include "cube/mdx_builder.h"
#include "cube/probe.h"
#include "cube/query_periods.h"
#include "platform/failure.h"
#include "platform/locale.h"
#include "reports/error_report.h"
#include "reports/query_log.h"
#include "settings/set_reader.h"

namespace vok {
namespace {

constexpr int32_t kDone = 0;
constexpr int16_t kLogLineWidth = 80;

/// One query of the run.
struct Pass {
  const char* log_name;
  int16_t open_balance_key;
  bool open_balance;
  double begin;  ///< its share of the run
  double end;
};

constexpr Pass kOnlyPass{"MdxQry", 0, false, 0.1, 1};
constexpr Pass kFirstPass{"MdxQry1", 1, false, 0.1, 0.6};
constexpr Pass kOpenBalancePass{"MdxQry0", 0, true, 0.6, 1};

class QueryRun {
 public:
  QueryRun(const Host& host, Publics& publics) : host_(host), publics_(publics) {}

  int32_t Run(const std::string& data_source, const std::string& periods,
              const std::string& output_path) {
    CheckStop();
    output_ = NewRunOutput(host_, WorkbookPath(output_path), publics_.keep_old_workbook);
    publics_.cube.CubeMeasures.assign(1, Value());
    if (!Load(data_source, periods)) return failure_number::kSettingsUnreadable;
    if (const int32_t code = PrepareCube(); code != kDone) return code;
    const auto& [source, set] = publics_.settings;
    output_.workbook->SetLook(RunLook(host_, publics_, source.SetName + ", " + set.SetName));
    RunPasses();
    if (!publics_.last_run.workbook.empty()) FinishWorkbook();
    connection_->Close();
    return kDone;
  }

 private:
  void CheckStop() const {
    if (publics_.stop != nullptr) publics_.stop->Check();
  }

  void Begin(const char* name, double begin, double end) const {
    if (publics_.on_step) publics_.on_step({name, begin, end});
  }

  bool Load(const std::string& data_source, const std::string& periods) {
    Begin("settings", 0, 0.02);
    const StepTimer timer(host_.clock, publics_.last_run.settings);
    FindSettingsFolder(host_, publics_.environment);
    const std::string database = SettingsDatabase(publics_.environment.SettingsFolder);
    if (!host_.files.Exists(database)) {
      publics_.last_run.cause = "The file \"" + host_.files.NativePath(database) + "\" is missing";
      throw Failure(failure_number::kDatabaseNotFound, "Database not Found");
    }
    return LoadSettings(host_, publics_.environment, publics_.settings, publics_.cube.CubeMeasures,
                        data_source, periods) == 0;
  }

  int32_t PrepareCube() {
    Begin("cube", 0.02, kOnlyPass.begin);
    const StepTimer timer(host_.clock, publics_.last_run.cube);
    const DataSourceSetting& setting = publics_.settings.data_source;
    const int32_t opened =
        OpenConnection(host_, connection_,
                       RunConnectionText(setting.CubeFile, setting.CubeName) + publics_.cube_limits,
                       publics_.stop);
    CheckStop();
    if (opened != 0) return failure_number::kConnectionError;
    const int32_t probed = GetMaxDateAndOpBalance(host_, *connection_, setting, publics_.cube);
    CheckStop();
    if (probed != 0) return failure_number::kInvalidDate;
    const std::string missing = MissingMeasures();
    if (missing.empty()) return kDone;
    publics_.last_run.cause =
        "cube " + setting.CubeName + " of " + setting.CubeFile + " has no measure " + missing;
    return failure_number::kInvalidMeasure;
  }

  std::string MissingMeasures() const {
    std::string missing;
    for (const MoneySetEntry& set : publics_.settings.data_source.MoneySets) {
      const std::string quoted = "\"" + set.Measure + "\"";
      if (!IsCubeMeasure(set.Measure) && missing.find(quoted) == std::string::npos) {
        missing += (missing.empty() ? "" : ", ") + quoted;
      }
    }
    return missing;
  }

  bool IsCubeMeasure(const std::string& measure) const {
    const Value::Array& known = publics_.cube.CubeMeasures;
    return std::any_of(known.begin() + 1, known.end(), [&](const Value& name) {
      return EqualNoCase(host_.locale, name.ToText(), measure);
    });
  }

  void RunPasses() {
    if (!publics_.cube.HasOpeningBalance) {
      RunPass(kOnlyPass);
      return;
    }
    RunPass(kFirstPass);
    const auto& periods = publics_.settings.periods.Periods;
    const bool opening_balance_asked = std::any_of(
        periods.begin(), periods.end(), [](const auto& p) { return p.IncludeOpenBalance; });
    if (opening_balance_asked) RunPass(kOpenBalancePass);
  }

  void RunPass(const Pass& pass) {
    CheckStop();
    if (!PrepareQueryPeriods(publics_.settings, publics_.cube, pass.open_balance)) {
      Log("No valid MDX", pass);
      return;
    }
    cellset_.reset();
    const double queried = (pass.begin + pass.end) / 2;
    Begin("query", pass.begin, queried);
    Execute(pass);
    Begin("workbook", queried, pass.end);
    if (cellset_->PositionCount(0) > 0 && cellset_->PositionCount(1) > 0) {
      // Only a workbook of this run is appended to: an earlier pass may have written none.
      const bool append = !publics_.last_run.workbook.empty();
      DisplayCellsetOmvinExcel(host_, publics_, *cellset_, output_, append);
    }
  }

  /// From here on nothing that fails takes the workbook away.
  void FinishWorkbook() {
    const StepTimer timer(host_.clock, publics_.last_run.writing);
    CommitWorkbook(host_, output_);
    publics_.last_run.whole = true;
  }

  void Execute(const Pass& pass) {
    const StepTimer timer(host_.clock, publics_.last_run.mdx);
    const std::string mdx =
        BuildQueryMdx(publics_.settings.data_source, publics_.cube, pass.open_balance_key);
    Log(mdx, pass);
    cellset_ = connection_->Execute(mdx);
    ++publics_.last_run.queries;
  }

  void Log(const std::string& text, const Pass& pass) {
    WriteQueryLog(host_, publics_.environment, text, pass.log_name, true, kLogLineWidth, false);
  }

  const Host& host_;
  Publics& publics_;
  RunOutput output_;  // takes its workbook back unless that was finished
  std::unique_ptr<CubeConnection> connection_;
  std::unique_ptr<Cellset> cellset_;  // of the last pass; goes before its connection
};

/// The grid of the run's query on its way to the workbook: what passes is counted and previewed for
/// the run's report, which `Report` brings up to date.
class WatchedGrid : public GridRows {
 public:
  WatchedGrid(const Host& host, Publics& publics, const Cellset& cellset, bool append)
      : host_(host),
        publics_(publics),
        skipped_(append ? 0 : kLabelRows),
        rows_(publics.last_run.rows),
        preview_(publics.last_run.preview) {
    Reported([&] { grid_.emplace(cellset, publics_.cube.QueryPeriods, append); });
  }

  CellBlock Next(std::size_t most) override {
    if (publics_.stop != nullptr) publics_.stop->Check();
    const StepTimer timer(host_.clock, milliseconds_);
    CellBlock rows;
    Reported([&] { rows = grid_->Next(most); });
    if (rows.rows() == 0) return rows;
    rows_ += rows.rows() - skipped_;
    AddToPreview(rows, skipped_ + 1, publics_.cube.QueryPeriods, publics_.settings.periods,
                 preview_);
    skipped_ = 0;
    return rows;
  }

  void Report(RunReport& report) {
    report.rows = rows_;
    report.preview = std::move(preview_);
    report.grid += milliseconds_;
    report.writing -= milliseconds_;
  }

 private:
  /// Does the work; a failure of it is shown.
  template <typename Work>
  void Reported(const Work& work) const {
    try {
      work();
    } catch (...) {
      const Failure failure = CurrentFailure();
      ShowErrorReport(host_, failure,
                      {.FunctionName = "DisplayCellsetOmvinExcel", .ModuleName = "ModXls"});
      throw Failure(failure);
    }
  }

  const Host& host_;
  Publics& publics_;
  std::size_t skipped_;  ///< rows for the labels that are still to come
  std::size_t rows_;
  RunPreview preview_;
  std::optional<ResultGrid> grid_;
  uint32_t milliseconds_ = 0;
};

bool IsThere(const Files& files, const std::string& path) {
  try {
    return files.Exists(path);
  } catch (const Failure&) {  // the failure of the run is the one to tell
    return true;
  }
}

/// What a failed run has saved is in the report only when it is whole, or could not be removed.
void ForgetRemoved(const Files& files, const Publics& publics, RunReport& report) {
  if (report.whole || report.workbook.empty()) return;
  if (!publics.keep_old_workbook && IsThere(files, report.workbook)) return;
  report.workbook.clear();
  report.rows = 0;
  report.preview = {};
}

int32_t RunReporting(const Host& host, Publics& publics, const std::string& CubeSetName,
                     const std::string& PeriodsName, const std::string& OutputPath) {
  const StepTimer timer(host.clock, publics.last_run.total);
  try {
    return QueryRun(host, publics).Run(CubeSetName, PeriodsName, OutputPath);
  } catch (...) {
    const Failure failure = CurrentFailure();
    publics.last_run.stopped = failure.number() == kQueryCancelled;
    ShowErrorReport(host, failure, {.FunctionName = "CubtoXls", .ModuleName = "ModCubtoXls"});
    ForgetRemoved(host.files, publics, publics.last_run);
    ClearError(publics.status);
    return failure.number();
  }
}

/// The host with other message boxes.
Host WithBoxes(const Host& host, MessageBoxes& boxes) {
  return {host.component, host.files,    host.registry, host.locale,     host.clock,
          boxes,          host.database, host.cube,     host.spreadsheet};
}

}  // namespace

int32_t CubtoXls(const Host& host, Publics& publics, const std::string& CubeSetName,
                 const std::string& PeriodsName, const std::string& OutputPath) {
  RunReport& report = publics.last_run;
  report = {};
  RunCause cause(host.message_boxes);
  report.code = RunReporting(WithBoxes(host, cause), publics, CubeSetName, PeriodsName, OutputPath);
  if (report.cause.empty()) report.cause = cause.text();
  return report.code;
}

void DisplayCellsetOmvinExcel(const Host& host, Publics& publics, const Cellset& cellset,
                              const RunOutput& output, bool append) {
  WatchedGrid grid(host, publics, cellset, append);
  RunReport& report = publics.last_run;
  {
    const StepTimer timer(host.clock, report.writing);
    Arrtoxls(host, grid, output, append, publics.settings.periods);
  }
  grid.Report(report);
  report.workbook = output.path;
}

}  // namespace vok
