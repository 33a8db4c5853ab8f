// Writes a result grid into the output workbook, by way of the spreadsheet port.
//
// The workbook has one sheet "Data": columns A to K are texts, row 1 holds the period labels from
// column L on.
#pragma once

#include <array>
#include <string>

#include "platform/host.h"
#include "platform/spreadsheet.h"
#include "settings/records.h"

namespace vok {

/// First column of the labels: L.
inline constexpr std::size_t kFirstLabelColumn = 12;

/// Path of the workbook for a run's output path.
std::string WorkbookPath(const std::string& output_path);

/// Removes a workbook that stands in the way; there need not be one. Failures: those of
/// `Files::Delete`, and 75 for a directory of that name.
void DeleteOldWorkbook(Files& files, const std::string& workbook_path);

/// The labels of row 1 from column L on: "Qk>" and "Mk>" with the name of period k, for all twelve
/// periods.
std::array<std::string, 2 * kPeriodCount> PeriodLabels(const PeriodSet& periods);

/// Writes the grid as a new workbook in place of an old one, or, when appending, below the rows of
/// the one that is there; then the labels. A failure is reported and thrown on; an old workbook
/// that cannot be deleted is noticed before anything is written.
void Arrtoxls(const Host& host, const CellBlock& grid, const std::string& output_path, bool append,
              const PeriodSet& periods);

}  // namespace vok
