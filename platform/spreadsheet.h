// A spreadsheet program, by the operations that the workbook writer performs, one call each.
//
// Rows and columns are counted from 1, as on the sheet. Failures carry the program's numbers (1004)
// or the run-time library's for the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/value.h"

namespace vok {

/// A block of cell values, row by row. A text is stored as text, "" leaves the cell blank.
struct CellBlock {
  std::size_t rows = 0;
  std::size_t columns = 0;
  std::vector<Value> values;

  CellBlock() = default;
  CellBlock(std::size_t row_count, std::size_t column_count)
      : rows(row_count), columns(column_count), values(row_count * column_count) {}
  /// `row` and `column` counted from 1.
  Value& At(std::size_t row, std::size_t column) {
    return values[(row - 1) * columns + column - 1];
  }
  const Value& At(std::size_t row, std::size_t column) const {
    return values[(row - 1) * columns + column - 1];
  }
};

/// File format numbers of `SaveAs`.
inline constexpr int32_t kDefaultFormat = 0;
inline constexpr int32_t kOpenXmlWorkbook = 51;

/// One running spreadsheet program with at most one open workbook. The destructor lets it go, on
/// every path.
class SpreadsheetApplication {
 public:
  virtual ~SpreadsheetApplication() = default;
  virtual void SetDisplayAlerts(bool on) = 0;
  virtual void SetScreenUpdating(bool on) = 0;
  virtual std::string Version() const = 0;  ///< such as "16.0"

  /// One that an earlier application of the same `OutputWorkbook` saved.
  virtual void OpenWorkbook(const std::string& path) = 0;
  virtual void AddWorkbook() = 0;
  virtual std::size_t WorksheetCount() const = 0;
  virtual std::string WorksheetName(std::size_t index) const = 0;  ///< counted from 1
  virtual void SelectWorksheet(std::size_t index) = 0;             ///< counted from 1

  virtual void SetActiveSheetName(const std::string& name) = 0;
  /// `columns` such as "A:K", `format` such as "@".
  virtual void SetColumnsNumberFormat(const std::string& columns, const std::string& format) = 0;
  /// `Range(cell).CurrentRegion.Rows.Count`: rows of the block around the cell that is bounded by
  /// blank rows and columns.
  virtual std::size_t CurrentRegionRows(const std::string& cell) const = 0;
  /// Assigns the block to the range whose first cell is given.
  virtual void SetFormula(std::size_t row, std::size_t column, const CellBlock& block) = 0;

  virtual void SaveAs(const std::string& path, int32_t format) = 0;
  virtual void Quit() = 0;
};

/// The workbook that one run leaves at its path. Each pass of the run saves it there by an
/// application of its own; what one has saved the next can open. Others may see it before `Commit`
/// only where the program itself writes it; without `Commit` the destructor removes it.
class OutputWorkbook {
 public:
  virtual ~OutputWorkbook() = default;
  virtual std::unique_ptr<SpreadsheetApplication> NewApplication() = 0;
  /// Puts what was saved in its place. Failures are those of the files port.
  virtual void Commit() = 0;
};

class Spreadsheet {
 public:
  virtual ~Spreadsheet() = default;
  /// With `keep_old` a workbook that is there stays until `Commit`, and one that could not be
  /// replaced then is a failure now. Without it the caller has removed it when `SaveAs` comes.
  virtual std::unique_ptr<OutputWorkbook> NewOutput(const std::string& path, bool keep_old) = 0;
};

}  // namespace vok
