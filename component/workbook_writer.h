// Writes a result grid into the output workbook, by way of the spreadsheet port.
//
// The workbook has one sheet "Data": columns A to K are texts, row 1 holds the period labels from
// column L on.
#pragma once

#include <array>
#include <memory>
#include <string>

#include "component/result_grid.h"
#include "platform/host.h"
#include "platform/spreadsheet.h"
#include "settings/records.h"

namespace vok {

/// First column of the labels: L.
inline constexpr std::size_t kFirstLabelColumn = 12;

/// Path of the workbook for a run's output path.
std::string WorkbookPath(const std::string& output_path);

/// The output path that a person means by `typed`, which may have the workbook's ending, in any
/// letter case. Failure 75: a folder.
std::string OutputPath(const Files& files, std::string typed);

/// The workbook that a run is to leave.
struct RunOutput {
  std::string path;
  bool keep_old = false;  ///< an old one stays until the new one is whole; else it is deleted first
  std::unique_ptr<OutputWorkbook> workbook;
};

/// Looks whether a workbook can be written to the path, and deletes the old one unless it is kept
/// until then. Failures: those of deleting or replacing it, and 75 for a directory of that name.
RunOutput NewRunOutput(const Host& host, const std::string& path, bool keep_old);

/// The labels of row 1 from column L on: "Qk>" and "Mk>" with the name of period k, for all twelve
/// periods.
std::array<std::string, 2 * kPeriodCount> PeriodLabels(const PeriodSet& periods);

/// Writes the grid as a new workbook in place of an old one, or, when appending, below the rows of
/// the one that the run has saved before; then the labels. A failure is reported and thrown on,
/// except one of reading the grid, which is thrown on alone; an old workbook that cannot be deleted
/// is noticed before anything is written.
void Arrtoxls(const Host& host, GridRows& grid, const RunOutput& output, bool append,
              const PeriodSet& periods);

/// Puts the workbook of all passes in its place. A failure is reported and thrown on; that the
/// workbook is there but may not last is reported alone.
void CommitWorkbook(const Host& host, const RunOutput& output);

}  // namespace vok
