#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "platform/calendar.h"
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
/// 1 March 1900. The program counts a 29 February 1900 that never was, so earlier days differ.
constexpr double kFirstSerial = 61;
constexpr std::string_view kDateFormat = "mm-dd-yy";

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

/// Makes cells of values. Knows where it is, for its failures.
class CellMaker {
 public:
  CellMaker(Workbook& workbook, const Sheet& sheet) : workbook_(workbook), sheet_(sheet) {}

  void MoveTo(std::size_t row, std::size_t column) {
    row_ = row;
    column_ = column;
  }

  Cell operator()(std::monostate) { return Cell(); }
  Cell operator()(Null) { return Cell(); }
  Cell operator()(bool value) { return Cell::Boolean(value); }
  Cell operator()(int16_t value) { return Cell::Number(value); }
  Cell operator()(int32_t value) { return Cell::Number(value); }

  Cell operator()(double value) {
    if (!std::isfinite(value)) {
      Fail(failure_number::kAutomation,
           "the value is NaN or infinite. Correct the measure it comes from");
    }
    return Cell::Number(value);
  }

  Cell operator()(const Date& date) {
    if (!(date.serial >= kFirstSerial && date.serial < kPastDays)) {
      Fail(failure_number::kAutomation,
           "a sheet's dates run from 1 March 1900 to 31 December 9999. Write it as a text");
    }
    Cell cell = Cell::Number(date.serial);
    cell.format = workbook_.Format(kDateFormat);
    return cell;
  }

  Cell operator()(const std::string& text) {
    if (text.empty()) return Cell();
    if (!IsUtf8(text)) return (*this)(ToUtf8(text));
    if (text.size() > kMaxTextUnits && Utf16Length(text) > kMaxTextUnits) {
      Fail(failure_number::kAutomation, "the text has " + std::to_string(Utf16Length(text)) +
                                            " characters, a cell holds 32767. Shorten it");
    }
    return Cell::Text(workbook_.texts.Intern(text));
  }

  template <typename Other>
  Cell operator()(const Other&) {
    Fail(failure_number::kTypeMismatch, "a value of this type cannot stand in a cell");
  }

 private:
  [[noreturn]] void Fail(int32_t number, const std::string& why) const {
    throw Failure(number, "Cell " + CellName(row_, column_) + " of sheet \"" + sheet_.name +
                              "\" cannot be written: " + why + ".");
  }

  Workbook& workbook_;
  const Sheet& sheet_;
  std::size_t row_ = 0;
  std::size_t column_ = 0;
};

/// What the applications of a run hand on.
struct SavedWorkbook {
  std::string path;
  std::shared_ptr<Workbook> workbook;  ///< as it was saved last; null: not saved, or open again
};

class XlsxApplication : public SpreadsheetApplication {
 public:
  explicit XlsxApplication(SavedWorkbook& saved) : saved_(saved) {}

  void SetDisplayAlerts(bool) override {}   // there is nobody to alert
  void SetScreenUpdating(bool) override {}  // and no screen
  std::string Version() const override { return "16.0"; }

  void OpenWorkbook(const std::string& path) override {
    CheckNoneOpen();
    if (path != saved_.path || !saved_.workbook) {
      Refuse("The workbook \"" + path +
             "\" cannot be opened: rows are added only to what the same run has saved. Run the "
             "query into a new workbook.");
    }
    workbook_ = std::move(saved_.workbook);
  }

  void AddWorkbook() override {
    CheckNoneOpen();
    workbook_ = std::make_shared<Workbook>();
    workbook_->sheets.emplace_back("Sheet1");
  }

  std::size_t WorksheetCount() const override { return Open().sheets.size(); }

  std::string WorksheetName(std::size_t index) const override {
    CheckSheet(index);
    return Open().sheets[index - 1].name;
  }

  void SelectWorksheet(std::size_t index) override {
    CheckSheet(index);
    Open().active = index - 1;
  }

  void SetActiveSheetName(const std::string& name) override {
    CheckSheetName(name);
    for (const Sheet& other : Open().sheets) {
      if (&other != &Active() && EqualNoCaseAscii(other.name, name)) {
        Refuse("A sheet cannot be named \"" + name +
               "\": another one of the workbook has the name.");
      }
    }
    Active().name = name;
  }

  void SetColumnsNumberFormat(const std::string& columns, const std::string& format) override {
    const auto range = ParseColumns(columns);
    if (!range) Refuse("\"" + columns + "\" is no range of columns. Give one such as \"A:K\".");
    Active().SetColumnsFormat(*range, Open().Format(ToUtf8(format)));
  }

  std::size_t CurrentRegionRows(const std::string& cell) const override {
    const auto place = ParseCell(cell);
    if (!place) Refuse("\"" + cell + "\" is no cell of a sheet. Give one such as \"A1\".");
    return xlsx::CurrentRegionRows(Active(), *place);
  }

  void SetFormula(std::size_t row, std::size_t column, const CellBlock& block) override {
    if (block.rows == 0 || block.columns == 0) return;
    CheckFits(row, column, block);
    CellMaker make(Open(), Active());
    std::vector<Cell> cells(block.columns);
    for (std::size_t i = 0; i < block.rows; ++i) {
      for (std::size_t j = 0; j < block.columns; ++j) {
        make.MoveTo(row + i, column + j);
        cells[j] = std::visit(make, block.At(i + 1, j + 1).storage());
      }
      Active().Assign({static_cast<uint32_t>(row + i), static_cast<uint32_t>(column)}, cells);
    }
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
    CheckOpen();
    saved_.workbook = workbook_;
  }

  void Quit() override { workbook_.reset(); }

 private:
  void CheckOpen() const {
    if (!workbook_) throw Failure(failure_number::kObjectNotSet, "No workbook is open.");
  }
  const Workbook& Open() const {
    CheckOpen();
    return *workbook_;
  }
  /// To be changed: what was saved stays as it is.
  Workbook& Open() {
    CheckOpen();
    if (workbook_ == saved_.workbook) workbook_ = std::make_shared<Workbook>(*workbook_);
    return *workbook_;
  }
  const Sheet& Active() const { return Open().sheets[Open().active]; }
  Sheet& Active() { return Open().sheets[Open().active]; }

  void CheckNoneOpen() const {
    if (workbook_) Refuse("A workbook is open already. Save it and quit first.");
  }

  void CheckSheet(std::size_t index) const {
    if (index == 0 || index > Open().sheets.size()) {
      throw Failure(failure_number::kSubscript, "There is no sheet " + std::to_string(index) +
                                                    ": the workbook has " +
                                                    std::to_string(Open().sheets.size()) + ".");
    }
  }

  void CheckFits(std::size_t row, std::size_t column, const CellBlock& block) const {
    const bool fits = row >= 1 && column >= 1 && row <= kMaxRows && column <= kMaxColumns &&
                      block.rows <= kMaxRows - row + 1 && block.columns <= kMaxColumns - column + 1;
    if (fits) return;
    Refuse(std::to_string(block.rows) + " rows and " + std::to_string(block.columns) +
           " columns from row " + std::to_string(row) + ", column " + std::to_string(column) +
           " do not fit on sheet \"" + Active().name +
           "\": it has 1048576 rows and 16384 columns. Split the query into several workbooks.");
  }

  SavedWorkbook& saved_;
  std::shared_ptr<Workbook> workbook_;
};

class XlsxOutput : public OutputWorkbook {
 public:
  XlsxOutput(Files& files, const std::string& path, bool keep_old)
      : files_(files), saved_{path, {}} {
    if (keep_old) file_ = files.Replace(path);
  }

  std::unique_ptr<SpreadsheetApplication> NewApplication() override {
    return std::make_unique<XlsxApplication>(saved_);
  }

  void Commit() override {
    if (!saved_.workbook) throw Failure(failure_number::kObjectNotSet, "No workbook was saved.");
    const ByteBuffer bytes = WriteWorkbook(*saved_.workbook, saved_.path);
    const auto file = file_ ? std::move(file_) : files_.Replace(saved_.path);
    file->Write(std::as_bytes(std::span(bytes.data(), bytes.size())));
    file->Commit();
  }

 private:
  Files& files_;
  SavedWorkbook saved_;
  std::unique_ptr<FileReplacement> file_;  ///< made early to see that it can be
};

}  // namespace

std::unique_ptr<OutputWorkbook> XlsxSpreadsheet::NewOutput(const std::string& path, bool keep_old) {
  return std::make_unique<XlsxOutput>(files_, path, keep_old);
}

}  // namespace vok::xlsx
