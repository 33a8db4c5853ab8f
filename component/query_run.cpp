#include "component/query_run.h"

#include <algorithm>
#include <memory>

#include "component/reports/error_report.h"
#include "component/reports/query_log.h"
#include "component/result_grid.h"
#include "component/step_timer.h"
#include "component/workbook_writer.h"
#include "cube/connection.h"
#include "cube/mdx_builder.h"
#include "cube/probe.h"
#include "cube/query_periods.h"
#include "platform/failure.h"
#include "platform/locale.h"
#include "settings/reader.h"

namespace vok {
namespace {

constexpr int32_t kDone = 0;
constexpr int16_t kLogLineWidth = 80;

/// One query of the run.
struct Pass {
  const char* log_name;
  int16_t open_balance_key;
  bool open_balance;
};

constexpr Pass kOnlyPass{"MdxQry", 0, false};
constexpr Pass kFirstPass{"MdxQry1", 1, false};
constexpr Pass kOpenBalancePass{"MdxQry0", 0, true};

class QueryRun {
 public:
  QueryRun(const Host& host, Publics& publics, const std::string& output_path)
      : host_(host), publics_(publics), output_path_(output_path) {}
  ~QueryRun() {
    if (publics_.stop != nullptr) publics_.stop->Detach();
  }
  QueryRun(const QueryRun&) = delete;
  QueryRun& operator=(const QueryRun&) = delete;

  int32_t Run(const std::string& data_source, const std::string& periods) {
    CheckStop();
    cellset_ = host_.cube.NewCellset();
    DeleteOldWorkbook(host_.files, WorkbookPath(output_path_));
    publics_.cube.CubeMeasures.assign(1, Value());
    if (!Load(data_source, periods)) return failure_number::kSettingsUnreadable;
    if (const int32_t code = PrepareCube(); code != kDone) return code;
    cellset_->SetActiveConnection(*connection_);
    RunPasses();
    connection_->Close();
    return kDone;
  }

 private:
  void CheckStop() const {
    if (publics_.stop != nullptr) publics_.stop->Check();
  }

  bool Load(const std::string& data_source, const std::string& periods) {
    const StepTimer timer(host_.clock, publics_.last_run.settings);
    FindSettingsFolder(host_, publics_.environment);
    if (!host_.files.Exists(SettingsDatabase(publics_.environment.SettingsFolder))) {
      throw Failure(failure_number::kDatabaseNotFound, "Database not Found");
    }
    return LoadSettings(host_, publics_.environment, publics_.settings, publics_.cube.CubeMeasures,
                        data_source, periods) == 0;
  }

  int32_t PrepareCube() {
    const StepTimer timer(host_.clock, publics_.last_run.cube);
    const DataSourceSetting& setting = publics_.settings.data_source;
    const int32_t opened =
        OpenConnection(host_, connection_, setting.CubeFile, setting.CubeName, publics_.stop);
    CheckStop();
    if (opened != 0) return failure_number::kConnectionError;
    const int32_t probed = GetMaxDateAndOpBalance(host_, *connection_, setting, publics_.cube);
    CheckStop();
    if (probed != 0) return failure_number::kInvalidDate;
    const auto& money_sets = setting.MoneySets;
    const bool known = std::all_of(money_sets.begin(), money_sets.end(),
                                   [this](const auto& set) { return IsCubeMeasure(set.Measure); });
    return known ? kDone : failure_number::kInvalidMeasure;
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
    Execute(pass);
    if (cellset_->AxisAt(0).PositionCount() > 0 && cellset_->AxisAt(1).PositionCount() > 0) {
      // Only a workbook of this run is appended to: an earlier pass may have written none.
      const bool append = !publics_.last_run.workbook.empty();
      DisplayCellsetOmvinExcel(host_, publics_, *cellset_, output_path_, append);
    }
    cellset_->Close();
  }

  void Execute(const Pass& pass) {
    const StepTimer timer(host_.clock, publics_.last_run.mdx);
    const std::string mdx =
        BuildQueryMdx(publics_.settings.data_source, publics_.cube, pass.open_balance_key);
    Log(mdx, pass);
    cellset_->SetSource(mdx);
    cellset_->Open();
  }

  void Log(const std::string& text, const Pass& pass) {
    WriteQueryLog(host_, publics_.environment, text, pass.log_name, true, kLogLineWidth, false);
  }

  const Host& host_;
  Publics& publics_;
  const std::string& output_path_;
  std::unique_ptr<CubeConnection> connection_;
  std::unique_ptr<Cellset> cellset_;
};

/// A workbook of the first pass alone would pass for the whole answer.
void RemoveIncomplete(Files& files, RunReport& report) {
  if (report.workbook.empty()) return;
  try {
    DeleteOldWorkbook(files, report.workbook);
  } catch (...) {  // the failure of the run is the one to tell
    return;
  }
  report.workbook.clear();
  report.rows = 0;
  report.preview = {};
}

}  // namespace

int32_t CubtoXls(const Host& host, Publics& publics, const std::string& CubeSetName,
                 const std::string& PeriodsName, const std::string& OutputPath) {
  publics.last_run = {};
  const StepTimer timer(host.clock, publics.last_run.total);
  std::unique_ptr<PathClaim> claim;  // of this run, until its workbook is whole or removed
  try {
    claim = host.files.Claim(WorkbookPath(OutputPath));
    return QueryRun(host, publics, OutputPath).Run(CubeSetName, PeriodsName);
  } catch (...) {
    const Failure failure = CurrentFailure();
    publics.last_run.stopped = failure.number() == kQueryCancelled;
    ShowErrorReport(host, failure, {.FunctionName = "CubtoXls", .ModuleName = "ModCubtoXls"});
    RemoveIncomplete(host.files, publics.last_run);
    ClearError(publics.status);
    return failure.number();
  }
}

}  // namespace vok
