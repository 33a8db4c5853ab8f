// A spreadsheet program, by the operations that the workbook writer performs, one call each.
//
// Rows and columns are counted from 1, as on the sheet. Failures carry the program's numbers (1004)
// or the run-time library's for the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/value.h"

namespace vok {

/// One cell of a block.
struct BlockCell {
  enum class Kind : uint8_t { kEmpty, kNumber, kText };
  Kind kind = Kind::kEmpty;
  uint32_t size = 0;  ///< of a text, in bytes
  union {
    double number = 0;
    std::size_t begin;  ///< of a text, among those of the block
  };

  bool IsBlank() const { return kind != Kind::kNumber && size == 0; }
};

/// A block of cells, row by row, each empty, a number or a text. A text is stored as text, ""
/// leaves the cell blank. Rows and columns are counted from 1.
class CellBlock {
 public:
  CellBlock() = default;
  CellBlock(std::size_t row_count, std::size_t column_count)
      : rows_(row_count), columns_(column_count), cells_(row_count * column_count) {}

  std::size_t rows() const { return rows_; }
  std::size_t columns() const { return columns_; }

  void SetNumber(std::size_t row, std::size_t column, double number) {
    BlockCell& cell = At(row, column);
    cell.kind = BlockCell::Kind::kNumber;
    cell.number = number;
  }
  void SetText(std::size_t row, std::size_t column, std::string_view text) {
    BlockCell& cell = At(row, column);
    cell.kind = BlockCell::Kind::kText;
    cell.size = static_cast<uint32_t>(text.size());
    cell.begin = texts_.size();
    texts_ += text;
  }

  /// Leaves the row's cells empty.
  void ClearRow(std::size_t row) {
    for (std::size_t column = 1; column <= columns_; ++column) At(row, column) = BlockCell();
  }
  /// The cells of a row, as many as there are columns.
  const BlockCell* Row(std::size_t row) const { return &cells_[(row - 1) * columns_]; }
  std::string_view Text(const BlockCell& cell) const {
    return std::string_view(texts_).substr(cell.begin, cell.size);
  }
  Value ValueAt(std::size_t row, std::size_t column) const;

 private:
  BlockCell& At(std::size_t row, std::size_t column) {
    return cells_[(row - 1) * columns_ + column - 1];
  }

  std::size_t rows_ = 0;
  std::size_t columns_ = 0;
  std::vector<BlockCell> cells_;
  std::string texts_;
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
  /// Rows that are best assigned at once, where there are many.
  virtual std::size_t RowsAtOnce() const = 0;
  /// Assigns the block to the range whose first cell is given.
  virtual void SetFormula(std::size_t row, std::size_t column, CellBlock block) = 0;

  virtual void SaveAs(const std::string& path, int32_t format) = 0;
  virtual void Quit() = 0;
};

/// How a sheet is to be read and printed. It changes no value, text or cell.
struct WorkbookLook {
  std::string title;
  std::size_t captions = 0;  ///< columns from A on that say what a row is; 0: no look at all
  /// Number formats of the columns after the captions, whose labels stand in row 1.
  std::vector<std::string> formats = {};
  bool right_to_left = false;
  bool letter_paper = false;  ///< else A4
};

/// The workbook that one run leaves at its path. Each pass of the run saves it there by an
/// application of its own; what one has saved the next can open. Others may see it before `Commit`
/// only where the program itself writes it; without `Commit` the destructor removes it.
class OutputWorkbook {
 public:
  virtual ~OutputWorkbook() = default;
  /// Before the first application. A program that its user has set up passes over it.
  virtual void SetLook(const WorkbookLook&) {}
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
