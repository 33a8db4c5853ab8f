#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "platform/failure.h"
#include "platform/text.h"
#include "platform/utf8.h"
#include "providers/workbook/xlsx/cell_reference.h"
#include "providers/workbook/xlsx/text_rules.h"
#include "providers/workbook/xlsx/workbook.h"
#include "providers/workbook/xlsx/xlsx_spreadsheet.h"

namespace vok::xlsx {
namespace {

constexpr std::size_t kMaxSheetName = 31;
constexpr unsigned kMostThreads = 4;

[[noreturn]] void Refuse(const std::string& why) {
  throw Failure(failure_number::kAutomation, why);
}

void CheckSheetName(const std::string& name) {
  const bool has_control =
      std::any_of(name.begin(), name.end(), [](char c) { return c >= 0 && c < ' '; });
  if (name.empty() || Utf16Length(name) > kMaxSheetName || !IsUtf8(name) || has_control ||
      name.find_first_of(":\\/?*[]") != std::string::npos || name.front() == '\'' ||
      name.back() == '\'') {
    Refuse("A sheet cannot be named \"" + name +
           "\": a name has 1 to 31 characters, none of : \\ / ? * [ ], and no apostrophe at its "
           "ends.");
  }
}

/// Refuses what a cell cannot hold, by the name of the cell.
void CheckCell(const CellBlock& block, const BlockCell& cell, std::size_t row, std::size_t column,
               const std::string& sheet) {
  const auto fail = [&](const std::string& why) {
    Refuse("Cell " + CellName(row, column) + " of sheet \"" + sheet +
           "\" cannot be written: " + why + ".");
  };
  if (cell.kind == BlockCell::Kind::kNumber) {
    if (!std::isfinite(cell.number)) {
      fail("the value is NaN or infinite. Correct the measure it comes from");
    }
  } else if (cell.size > kMaxTextUnits) {
    const std::size_t units = Utf16Length(ToUtf8(block.Text(cell)));
    if (units > kMaxTextUnits) {
      fail("the text has " + std::to_string(units) + " characters, a cell holds 32767. Shorten it");
    }
  }
}

/// What the applications of a run hand on.
struct SavedWorkbook {
  std::string path;
  std::optional<Workbook> workbook;  ///< as it was saved last
  WorkbookLook look;
  SheetRows rows;  ///< those of it, and perhaps others that were not saved
};

class XlsxApplication : public SpreadsheetApplication {
 public:
  explicit XlsxApplication(SavedWorkbook& saved) : saved_(saved) {}

  void SetDisplayAlerts(bool) override {}   // there is nobody to alert
  void SetScreenUpdating(bool) override {}  // and no screen
  std::string Version() const override { return "16.0"; }

  void OpenWorkbook(const std::string& path) override {
    CheckNoneOpen();
    if (path != saved_.path || !saved_.workbook || HasOtherRows(*saved_.workbook)) {
      Refuse("The workbook \"" + path +
             "\" cannot be opened: rows are added only to what the same run has saved. Run the "
             "query into a new workbook.");
    }
    workbook_ = saved_.workbook;
    lined_ = workbook_->look.captions > 0;
  }

  void AddWorkbook() override {
    CheckNoneOpen();
    if (HasOtherRows({})) Refuse("A run writes one workbook, and has begun it.");
    workbook_.emplace().SetLook(saved_.look);
  }

  std::size_t WorksheetCount() const override {
    CheckOpen();
    return 1;
  }

  std::string WorksheetName(std::size_t index) const override {
    CheckSheet(index);
    return workbook_->sheet_name;
  }

  void SelectWorksheet(std::size_t index) override { CheckSheet(index); }

  void SetActiveSheetName(const std::string& name) override {
    CheckSheetName(name);
    Open().sheet_name = name;
  }

  void SetColumnsNumberFormat(const std::string& columns, const std::string& format) override {
    const auto range = ParseColumns(columns);
    if (!range) Refuse("\"" + columns + "\" is no range of columns. Give one such as \"A:K\".");
    if (Open().last_row > 1) {
      Refuse("The number format of columns " + columns + " must be set before rows are written.");
    }
    std::vector<uint16_t> styles = *Open().styles;
    styles.resize(std::max<std::size_t>(styles.size(), range->last));
    std::fill(styles.begin() + range->first - 1, styles.begin() + range->last,
              Open().Style({ToUtf8(format)}));
    Open().styles = std::make_shared<std::vector<uint16_t>>(std::move(styles));
  }

  std::size_t CurrentRegionRows(const std::string& cell) const override {
    CheckOpen();
    if (ParseCell(cell) != CellPlace{1, 1}) {
      Refuse("The block around \"" + cell + "\" is not known, only that around \"A1\" is.");
    }
    return workbook_->region.rows();
  }

  std::size_t RowsAtOnce() const override { return 256; }

  void SetFormula(std::size_t row, std::size_t column, CellBlock block) override {
    if (block.rows() == 0 || block.columns() == 0) return;
    CheckFits(row, column, block);
    for (std::size_t i = 1; i <= block.rows(); ++i) {
      for (std::size_t j = 1; j <= block.columns(); ++j) {
        CheckCell(block, block.Row(i)[j - 1], row + i - 1, column + j - 1, Open().sheet_name);
      }
      workbook_->region.Add(row + i - 1, column, block.Row(i), block.columns());
    }
    if (row == 1) {
      SetFirstRow(column, block);
      block.ClearRow(1);
    }
    if (row + block.rows() == 2) return;
    workbook_->last_row = row + block.rows() - 1;
    std::vector<SharedCell> shared = workbook_->shared.Share(block);
    const bool lined = std::exchange(lined_, false);
    saved_.rows.Add(std::move(block), {row, column, workbook_->styles, std::move(shared), 0,
                                       lined ? workbook_->LinedStyles() : nullptr});
  }

  void SaveAs(const std::string& path, int32_t format) override {
    if (format != kDefaultFormat && format != kOpenXmlWorkbook) {
      Refuse("The workbook \"" + path + "\" cannot be saved: file format " +
             std::to_string(format) + " is not supported, only 51 (.xlsx) is.");
    }
    if (path != saved_.path) {
      Refuse("The workbook cannot be saved as \"" + path + "\": this run writes \"" + saved_.path +
             "\".");
    }
    Open().rows = saved_.rows.Settle();
    saved_.workbook = workbook_;
  }

  void Quit() override { workbook_.reset(); }

 private:
  void CheckOpen() const {
    if (!workbook_) throw Failure(failure_number::kObjectNotSet, "No workbook is open.");
  }
  Workbook& Open() {
    CheckOpen();
    return *workbook_;
  }

  void CheckNoneOpen() const {
    if (workbook_) Refuse("A workbook is open already. Save it and quit first.");
  }

  bool HasOtherRows(const Workbook& workbook) {
    return saved_.rows.Settle().size.packed != workbook.rows.size.packed;
  }

  void CheckSheet(std::size_t index) const {
    CheckOpen();
    if (index != 1) {
      throw Failure(failure_number::kSubscript,
                    "There is no sheet " + std::to_string(index) + ": the workbook has 1.");
    }
  }

  void CheckFits(std::size_t row, std::size_t column, const CellBlock& block) {
    const bool fits = row >= 1 && column >= 1 && row <= kMaxRows && column <= kMaxColumns &&
                      block.rows() <= kMaxRows - row + 1 &&
                      block.columns() <= kMaxColumns - column + 1;
    if (!fits) {
      Refuse(std::to_string(block.rows()) + " rows and " + std::to_string(block.columns()) +
             " columns from row " + std::to_string(row) + ", column " + std::to_string(column) +
             " do not fit on sheet \"" + Open().sheet_name +
             "\": it has 1048576 rows and 16384 columns. Split the query into several workbooks.");
    }
    const std::size_t first = row == 1 ? 2 : row;  // of those that are written once
    if (row + block.rows() > first && first <= Open().last_row) {
      Refuse("Row " + std::to_string(first) + " of sheet \"" + Open().sheet_name +
             "\" is written already: below row 1, rows are written once, from top to bottom.");
    }
  }

  void SetFirstRow(std::size_t column, const CellBlock& block) {
    for (std::size_t i = 1; i <= block.columns(); ++i) {
      if (block.Row(1)[i - 1].IsBlank()) {
        workbook_->first_row.erase(column + i - 1);
      } else {
        workbook_->first_row[column + i - 1] = block.ValueAt(1, i);
      }
    }
  }

  SavedWorkbook& saved_;
  std::optional<Workbook> workbook_;
  bool lined_ = false;  ///< the next row begins the rows of another pass
};

class XlsxOutput : public OutputWorkbook {
 public:
  XlsxOutput(Files& files, const std::string& path, bool keep_old, const MakingTime& making_time,
             unsigned threads)
      : files_(files), saved_{path, {}, {}, {files, path, threads}}, making_time_(making_time) {
    if (keep_old) file_ = files.Replace(path);
  }

  void SetLook(const WorkbookLook& look) override { saved_.look = look; }

  std::unique_ptr<SpreadsheetApplication> NewApplication() override {
    return std::make_unique<XlsxApplication>(saved_);
  }

  void Commit() override {
    if (!saved_.workbook) throw Failure(failure_number::kObjectNotSet, "No workbook was saved.");
    if (making_time_) saved_.workbook->made = making_time_();
    const auto file = file_ ? std::move(file_) : files_.Replace(saved_.path);
    WriteWorkbook(*saved_.workbook, saved_.rows.spool(), saved_.path, *file);
    file->Commit();
  }

 private:
  Files& files_;
  SavedWorkbook saved_;
  MakingTime making_time_;
  std::unique_ptr<FileReplacement> file_;  ///< made early to see that it can be
};

}  // namespace

XlsxSpreadsheet::XlsxSpreadsheet(Files& files, MakingTime making_time, unsigned threads)
    : files_(files),
      making_time_(std::move(making_time)),
      threads_(threads != 0 ? threads : std::min(ProcessorCount(), kMostThreads)) {}

std::unique_ptr<OutputWorkbook> XlsxSpreadsheet::NewOutput(const std::string& path, bool keep_old) {
  return std::make_unique<XlsxOutput>(files_, path, keep_old, making_time_, threads_);
}

}  // namespace vok::xlsx
