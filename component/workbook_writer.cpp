#include "component/workbook_writer.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/failure.h"
#include "platform/locale.h"
#include "platform/text.h"
#include "reports/error_report.h"

namespace vok {
namespace {

constexpr std::string_view kEnding = ".xlsX";

constexpr const char* kSheetName = "Data";
constexpr int16_t kLastBinaryVersion = 11;  // later versions are told the format to save in

void OpenForAppending(const Host& host, SpreadsheetApplication& application,
                      const std::string& path) {
  application.OpenWorkbook(path);
  const std::size_t count = application.WorksheetCount();
  for (std::size_t index = 1; index <= count; ++index) {
    if (EqualNoCase(host.locale, application.WorksheetName(index), kSheetName)) {
      application.SelectWorksheet(index);
    }
  }
}

void AddNewWorkbook(SpreadsheetApplication& application) {
  application.AddWorkbook();
  application.SelectWorksheet(1);
  application.SetActiveSheetName(kSheetName);
  application.SetColumnsNumberFormat("A:K", "@");
}

void WriteLabels(SpreadsheetApplication& application, const PeriodSet& periods) {
  std::size_t column = kFirstLabelColumn;
  for (const std::string& label : PeriodLabels(periods)) {
    CellBlock cell(1, 1);
    cell.SetText(1, 1, label);
    application.SetFormula(1, column++, std::move(cell));
  }
}

void Save(SpreadsheetApplication& application, const std::string& path, int16_t version) {
  application.SaveAs(path, version > kLastBinaryVersion ? kOpenXmlWorkbook : kDefaultFormat);
}

void DeleteOld(Files& files, const RunOutput& output) {
  if (!output.keep_old && files.Exists(output.path)) files.Delete(output.path);
}

/// Does the work; a failure of it is shown.
template <typename Work>
void Reported(const Host& host, const Work& work) {
  try {
    work();
  } catch (...) {
    ShowErrorReport(host, CurrentFailure(), {.FunctionName = "Arrtoxls", .ModuleName = "ModXls"});
    throw;
  }
}

/// One pass of the run, as the operations of the program that it is made of.
class SheetPass {
 public:
  SheetPass(const RunOutput& output) : output_(output) {}

  void Open(const Host& host, bool append) {
    application_ = output_.workbook->NewApplication();
    if (!append) DeleteOld(host.files, output_);
    application_->SetDisplayAlerts(false);
    version_ = Value(application_->Version()).ToInt16();
    if (append) {
      OpenForAppending(host, *application_, output_.path);
    } else {
      AddNewWorkbook(*application_);
    }
    rows_above_ = append ? application_->CurrentRegionRows("A1") : 0;
  }

  std::size_t RowsAtOnce() const { return application_->RowsAtOnce(); }

  void Add(CellBlock rows) {
    const std::size_t first = rows_above_ + 1;
    rows_above_ += rows.rows();
    application_->SetFormula(first, 1, std::move(rows));
  }

  void Finish(const PeriodSet& periods) {
    WriteLabels(*application_, periods);
    Save(*application_, output_.path, version_);
    application_->SetScreenUpdating(true);
    application_->SetDisplayAlerts(true);
    application_->Quit();
  }

 private:
  const RunOutput& output_;
  std::unique_ptr<SpreadsheetApplication> application_;
  int16_t version_ = 0;
  std::size_t rows_above_ = 0;
};

}  // namespace

std::string WorkbookPath(const std::string& output_path) {
  return output_path + std::string(kEnding);
}

std::string OutputPath(const Files& files, std::string typed) {
  const std::size_t stem = typed.size() - std::min(typed.size(), kEnding.size());
  if (EqualNoCaseAscii(std::string_view(typed).substr(stem), kEnding)) {
    typed.resize(stem);
  } else if (files.IsDirectory(typed)) {
    throw Failure(failure_number::kPathAccess,
                  "Path/file access error: \"" + typed +
                      "\" is a folder. Name the workbook in it, such as \"" + typed + "/report\"");
  }
  return typed;
}

RunOutput NewRunOutput(const Host& host, const std::string& path, bool keep_old) {
  if (host.files.IsDirectory(path)) {
    throw Failure(failure_number::kPathAccess,
                  "Path/file access error: a directory named \"" + path +
                      "\" stands where the workbook is to be written; choose another output path");
  }
  RunOutput output{path, keep_old, host.spreadsheet.NewOutput(path, keep_old)};
  DeleteOld(host.files, output);
  return output;
}

std::array<std::string, 2 * kPeriodCount> PeriodLabels(const PeriodSet& periods) {
  std::array<std::string, 2 * kPeriodCount> labels;
  for (int k = 1; k <= kPeriodCount; ++k) {
    const std::string label = std::to_string(k) + ">" + periods.Period(k).PeriodName;
    const auto at = 2 * static_cast<std::size_t>(k - 1);
    labels[at] = "Q" + label;
    labels[at + 1] = "M" + label;
  }
  return labels;
}

void Arrtoxls(const Host& host, GridRows& grid, const RunOutput& output, bool append,
              const PeriodSet& periods) {
  SheetPass pass(output);
  Reported(host, [&] { pass.Open(host, append); });
  while (true) {
    CellBlock rows = grid.Next(pass.RowsAtOnce());
    if (rows.rows() == 0) break;
    Reported(host, [&] { pass.Add(std::move(rows)); });
  }
  Reported(host, [&] { pass.Finish(periods); });
}

void CommitWorkbook(const Host& host, const RunOutput& output) {
  try {
    Reported(host, [&] { output.workbook->Commit(); });
  } catch (const FileMayNotLast&) {  // the workbook is there
  }
}

}  // namespace vok
