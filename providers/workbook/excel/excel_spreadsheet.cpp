#include "providers/workbook/excel/excel_spreadsheet.h"

#include <filesystem>

#include "platform/failure.h"
#include "platform/spreadsheet.h"
#include "system/automation/object.h"
#include "system/automation/variant.h"
#include "system/windows/path_claim.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

constexpr char kExcel[] = "Excel.Application";
constexpr char kFirstCell[] = "a1";
/// Single cells are reckoned from the first label, as the labels are.
constexpr char kFirstLabel[] = "L1";
constexpr int32_t kFirstLabelColumn = 12;

/// Positions as the program takes them.
int32_t Number(std::size_t position) { return static_cast<int32_t>(position); }

/// An array of VARIANTs with two dimensions counted from 1, rows first.
Variant CellArray(const CellBlock& block) {
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(block.rows()), 1},
                             {static_cast<ULONG>(block.columns()), 1}};
  Variant array;
  array.Get()->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  if (array.Get()->parray == nullptr) throw std::bad_alloc();
  array.Get()->vt = VT_ARRAY | VT_VARIANT;
  const ArrayAccess<VARIANT> elements(array.Get()->parray);
  for (std::size_t column = 0; column < block.columns(); ++column) {
    for (std::size_t row = 0; row < block.rows(); ++row) {
      // The first dimension runs fastest.
      elements[column * block.rows() + row] = Variant(block.ValueAt(row + 1, column + 1)).Detach();
    }
  }
  return array;
}

class ExcelApplication : public SpreadsheetApplication {
 public:
  /// `saved` becomes true when there may be something at the path of the run's workbook.
  ExcelApplication(const Files& files, bool& saved)
      : files_(files), saved_(saved), application_(Object::Create(kExcel)) {}

  /// A program that nobody told to quit stays invisible for ever: it is told here, without its
  /// questions, with any answer.
  ~ExcelApplication() override {
    if (!quit_) {
      Ignoring([this] { application_.Put(L"DisplayAlerts", false); });
      Ignoring([this] { application_.Call(L"Quit"); });
    }
  }

  void SetDisplayAlerts(bool on) override { application_.Put(L"DisplayAlerts", on); }
  void SetScreenUpdating(bool on) override { application_.Put(L"ScreenUpdating", on); }
  std::string Version() const override { return application_.Read(L"Version").ToText(); }

  void OpenWorkbook(const std::string& path) override {
    application_.Child(L"Workbooks").Call(L"Open", FullPath(path));
    sheets_ = L"Worksheets";
  }
  void AddWorkbook() override { application_.Child(L"Workbooks").Call(L"Add"); }

  std::size_t WorksheetCount() const override {
    return static_cast<std::size_t>(application_.Child(L"Worksheets").Read(L"Count").ToInt32());
  }
  std::string WorksheetName(std::size_t index) const override {
    return application_.Child(L"Worksheets", Number(index)).Read(L"Name").ToText();
  }
  void SelectWorksheet(std::size_t index) override {
    application_.Child(sheets_, Number(index)).Call(L"Select");
  }
  void SetActiveSheetName(const std::string& name) override {
    application_.Child(L"ActiveSheet").Put(L"Name", name);
  }
  void SetColumnsNumberFormat(const std::string& columns, const std::string& format) override {
    application_.Child(L"Columns", columns).Put(L"NumberFormat", format);
  }
  std::size_t CurrentRegionRows(const std::string& cell) const override {
    const Object region = application_.Child(L"Range", cell).Child(L"CurrentRegion");
    return static_cast<std::size_t>(region.Child(L"Rows").Read(L"Count").ToInt32());
  }

  /// Each assignment is a call of another process; what it carries stands twice in memory.
  std::size_t RowsAtOnce() const override { return 4096; }

  void SetFormula(std::size_t row, std::size_t column, CellBlock block) override {
    if (block.rows() == 0 || block.columns() == 0) return;
    if (block.rows() == 1 && block.columns() == 1) {
      const int32_t right = Number(column) - kFirstLabelColumn;
      CellFrom(kFirstLabel, Number(row) - 1, right).Put(L"Formula", block.ValueAt(1, 1));
    } else {
      RangeOf(row, column, block).Put(L"Formula", CellArray(block));
    }
  }

  void SaveAs(const std::string& path, int32_t format) override {
    const Object workbook = application_.Child(L"ActiveWorkbook");
    const std::string file = FullPath(path);
    saved_ = true;
    if (format == kDefaultFormat) {
      workbook.Call(L"SaveAs", file);
    } else {
      workbook.Call(L"SaveAs", file, format);
    }
  }
  void Quit() override {
    application_.Call(L"Quit");
    quit_ = true;
  }

 private:
  template <typename Work>
  static void Ignoring(Work work) noexcept {
    try {
      work();
    } catch (...) {  // nothing more can be done for a program that does not answer
    }
  }

  /// The program has a current directory of its own.
  std::string FullPath(const std::string& path) const {
    return Utf8(std::filesystem::absolute(Utf16(files_.NativePath(path))).wstring());
  }

  Object CellFrom(const char* cell, int32_t down, int32_t right) const {
    return application_.Child(L"Range", cell).Child(L"Offset", down, right);
  }

  Object RangeOf(std::size_t row, std::size_t column, const CellBlock& block) const {
    const int32_t down = Number(block.rows()) - 1, right = Number(block.columns()) - 1;
    if (row == 1 && column == 1) {
      return application_.Child(L"Range", kFirstCell, CellFrom(kFirstCell, down, right));
    }
    const Object start = CellFrom(kFirstCell, Number(row) - 1, Number(column) - 1);
    return application_.Child(L"Range", start, start.Child(L"Offset", down, right));
  }

  const Files& files_;
  bool& saved_;
  Object application_;
  const wchar_t* sheets_ =
      L"Sheets";  ///< what a sheet is selected in: an old workbook may have charts
  bool quit_ = false;
};

class ExcelOutput : public OutputWorkbook {
 public:
  ExcelOutput(Files& files, const std::string& path)
      : files_(files), path_(path), claim_(ClaimPath(files.NativePath(path))) {}
  ExcelOutput(const ExcelOutput&) = delete;
  ExcelOutput& operator=(const ExcelOutput&) = delete;
  ~ExcelOutput() override {
    if (saved_) Remove();
  }

  std::unique_ptr<SpreadsheetApplication> NewApplication() override {
    return std::make_unique<ExcelApplication>(files_, saved_);
  }
  void Commit() override { saved_ = false; }

 private:
  void Remove() noexcept {
    try {
      if (files_.Exists(path_)) files_.Delete(path_);
    } catch (...) {  // the run looks whether it is still there
    }
  }

  Files& files_;
  std::string path_;
  std::unique_ptr<PathClaim> claim_;
  bool saved_ = false;  ///< and not committed
};

}  // namespace

std::unique_ptr<OutputWorkbook> ExcelSpreadsheet::NewOutput(const std::string& path,
                                                            bool keep_old) {
  if (keep_old || !IsRegistered(kExcel)) return without_excel_.NewOutput(path, keep_old);
  return std::make_unique<ExcelOutput>(files_, path);
}

}  // namespace vok::windows
