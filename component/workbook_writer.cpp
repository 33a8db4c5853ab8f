#include "component/workbook_writer.h"

#include "component/reports/error_report.h"
#include "platform/failure.h"
#include "platform/locale.h"

namespace vok {
namespace {

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
    cell.At(1, 1) = label;
    application.SetFormula(1, column++, cell);
  }
}

void Save(SpreadsheetApplication& application, const std::string& path, int16_t version) {
  application.SaveAs(path, version > kLastBinaryVersion ? kOpenXmlWorkbook : kDefaultFormat);
}

void Write(const Host& host, const CellBlock& grid, const std::string& path, bool append,
           const PeriodSet& periods) {
  const auto application = host.spreadsheet.NewApplication();
  if (!append) DeleteOldWorkbook(host.files, path);
  application->SetDisplayAlerts(false);
  const int16_t version = Value(application->Version()).ToInt16();
  if (append) {
    OpenForAppending(host, *application, path);
  } else {
    AddNewWorkbook(*application);
  }
  const std::size_t rows_above = append ? application->CurrentRegionRows("A1") : 0;
  application->SetFormula(rows_above + 1, 1, grid);
  WriteLabels(*application, periods);
  Save(*application, path, version);
  application->SetScreenUpdating(true);
  application->SetDisplayAlerts(true);
  application->Quit();
}

}  // namespace

std::string WorkbookPath(const std::string& output_path) { return output_path + ".xlsX"; }

void DeleteOldWorkbook(Files& files, const std::string& workbook_path) {
  if (files.IsDirectory(workbook_path)) {
    throw Failure(failure_number::kPathAccess,
                  "Path/file access error: a directory named \"" + workbook_path +
                      "\" stands where the workbook is to be written; choose another output path");
  }
  if (files.Exists(workbook_path)) files.Delete(workbook_path);
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

void Arrtoxls(const Host& host, const CellBlock& grid, const std::string& output_path, bool append,
              const PeriodSet& periods) {
  try {
    Write(host, grid, WorkbookPath(output_path), append, periods);
  } catch (...) {
    const Failure failure = CurrentFailure();
    ShowErrorReport(host, failure, {.FunctionName = "Arrtoxls", .ModuleName = "ModXls"});
    throw failure;
  }
}

}  // namespace vok
