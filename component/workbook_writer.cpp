#include "component/workbook_writer.h"

#include <algorithm>
#include <string_view>

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
    cell.At(1, 1) = label;
    application.SetFormula(1, column++, cell);
  }
}

void Save(SpreadsheetApplication& application, const std::string& path, int16_t version) {
  application.SaveAs(path, version > kLastBinaryVersion ? kOpenXmlWorkbook : kDefaultFormat);
}

void DeleteOld(Files& files, const RunOutput& output) {
  if (!output.keep_old && files.Exists(output.path)) files.Delete(output.path);
}

void Write(const Host& host, const CellBlock& grid, const RunOutput& output, bool append,
           const PeriodSet& periods) {
  const auto application = output.workbook->NewApplication();
  if (!append) DeleteOld(host.files, output);
  application->SetDisplayAlerts(false);
  const int16_t version = Value(application->Version()).ToInt16();
  if (append) {
    OpenForAppending(host, *application, output.path);
  } else {
    AddNewWorkbook(*application);
  }
  const std::size_t rows_above = append ? application->CurrentRegionRows("A1") : 0;
  application->SetFormula(rows_above + 1, 1, grid);
  WriteLabels(*application, periods);
  Save(*application, output.path, version);
  application->SetScreenUpdating(true);
  application->SetDisplayAlerts(true);
  application->Quit();
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

void Arrtoxls(const Host& host, const CellBlock& grid, const RunOutput& output, bool append,
              const PeriodSet& periods) {
  Reported(host, [&] { Write(host, grid, output, append, periods); });
}

void CommitWorkbook(const Host& host, const RunOutput& output) {
  try {
    Reported(host, [&] { output.workbook->Commit(); });
  } catch (const FileMayNotLast&) {  // the workbook is there
  }
}

}  // namespace vok
