#include <atomic>
#include <cstdlib>
#include <initializer_list>
#include <limits>
#include <new>
#include <numeric>
#include <random>
#include <utility>

#include "platform/failure.h"
#include "platform/text.h"
#include "providers/workbook/xlsx/cell_reference.h"
#include "providers/workbook/xlsx/text_rules.h"
#include "providers/workbook/xlsx/xlsx_spreadsheet.h"
#include "tests/support/failing_files.h"
#include "tests/support/memory_host.h"
#include "workbook_tools.h"

namespace vok::xlsx {
namespace {

/// One value everywhere: a number or a text.
CellBlock Block(std::size_t rows, std::size_t columns, const Value& value) {
  CellBlock block(rows, columns);
  for (std::size_t cell = 0; cell < rows * columns; ++cell) {
    const std::size_t row = cell / columns + 1, column = cell % columns + 1;
    if (const auto* number = value.As<double>()) {
      block.SetNumber(row, column, *number);
    } else {
      block.SetText(row, column, value.ToText());
    }
  }
  return block;
}

class SpreadsheetTest : public testing::Test {
 protected:
  std::unique_ptr<SpreadsheetApplication> Start() { return output_->NewApplication(); }

  std::unique_ptr<SpreadsheetApplication> StartNew() {
    auto application = Start();
    application->AddWorkbook();
    return application;
  }

  static void SetCell(SpreadsheetApplication& application, std::size_t row, std::size_t column,
                      const Value& value) {
    application.SetFormula(row, column, Block(1, 1, value));
  }

  std::map<std::string, std::string> Saved(SpreadsheetApplication& application) {
    application.SaveAs("book.xlsX", kOpenXmlWorkbook);
    output_->Commit();
    return CellsOf(files_.files.at("book.xlsX"));
  }

  test::MemoryFiles files_;
  XlsxSpreadsheet spreadsheet_{files_};
  std::unique_ptr<OutputWorkbook> output_ = spreadsheet_.NewOutput("book.xlsX", false);
};

TEST_F(SpreadsheetTest, EveryKindOfValueComesBack) {
  const auto application = StartNew();
  const std::string longest(kMaxTextUnits, 'a');
  const struct {
    Value value;
    std::string stored;
  } cases[] = {
      {0.1 + 0.2, "number:0.30000000000000004"},
      {-1234567.89, "number:-1234567.89"},
      {1e300, "number:1e+300"},
      {std::numeric_limits<double>::max(), "number:1.7976931348623157e+308"},
      {std::numeric_limits<double>::denorm_min(), "number:5e-324"},
      {"0", "text:0"},
      {"=1+1", "text:=1+1"},
      {" \t outer blanks \n ", "text: \t outer blanks \n "},
      {std::string("nul \0 and \x1F\r", 12), "text:nul _x0000_ and _x001F__x000D_"},
      {" a _x0041_", "text: a _x005F_x0041_"},
      {longest.substr(1), "text:" + longest.substr(1)},
      {longest, "text:" + longest},
      {longest.substr(1) + "\xD7\x90", "text:" + longest.substr(1) + "\xD7\x90"},
  };
  std::size_t row = 0;
  for (const auto& [value, stored] : cases) SetCell(*application, ++row, 3, value);
  const auto cells = Saved(*application);
  EXPECT_EQ(cells.size(), row);
  row = 0;
  for (const auto& [value, stored] : cases) {
    EXPECT_EQ(cells.at("Sheet1!C" + std::to_string(++row)), stored);
  }
}

TEST_F(SpreadsheetTest, WhatACellCannotHoldIsRefusedByName) {
  const auto application = StartNew();
  const std::string longest(kMaxTextUnits, 'a');
  const struct {
    Value value;
    int32_t number;
    const char* why;
  } cases[] = {
      {std::numeric_limits<double>::quiet_NaN(), 1004, "NaN or infinite"},
      {std::numeric_limits<double>::infinity(), 1004, "NaN or infinite"},
      {-std::numeric_limits<double>::infinity(), 1004, "NaN or infinite"},
      {longest + "a", 1004, "32768 characters"},
      {longest.substr(1) + "\xF0\x9F\x98\x80", 1004, "32768 characters"},
  };
  for (const auto& [value, number, why] : cases) {
    for (const char* text : {why, "Cell AB3 of sheet \"Sheet1\""}) {
      ExpectFailure(number, text, [&, &bad = value] { SetCell(*application, 3, 28, bad); });
    }
  }
  EXPECT_TRUE(Saved(*application).empty());
}

TEST_F(SpreadsheetTest, BlocksEndAtTheSheetsLastRowAndColumn) {
  const auto application = StartNew();
  const auto put = [&](std::size_t row, std::size_t column, std::size_t rows, std::size_t columns) {
    application->SetFormula(row, column, Block(rows, columns, 1.0));
  };
  put(1, kMaxColumns - 1, 1, 2);
  put(kMaxRows - 1, 1, 2, 1);
  for (const std::size_t row : {kMaxRows, kMaxRows + 1, 0u}) {
    ExpectFailure(1004, "Split the query", [&] { put(row, 1, 2, 1); });
  }
  for (const std::size_t column : {kMaxColumns, kMaxColumns + 1, 0u}) {
    ExpectFailure(1004, "sheet \"Sheet1\"", [&] { put(1, column, 1, 2); });
  }
  const std::map<std::string, std::string> expected = {{"Sheet1!A1048575", "number:1"},
                                                       {"Sheet1!A1048576", "number:1"},
                                                       {"Sheet1!XFC1", "number:1"},
                                                       {"Sheet1!XFD1", "number:1"}};
  EXPECT_EQ(Saved(*application), expected);
}

TEST_F(SpreadsheetTest, RowOneIsWrittenAgainAndTheOthersOnce) {
  const auto application = StartNew();
  application->SetColumnsNumberFormat("C:A", "@");
  application->SetColumnsNumberFormat("E:E", "0.0 \"<pcs>\"");
  CellBlock block = Block(2, 5, 1.0);
  block.SetText(2, 2, "");
  block.SetText(2, 4, "");
  application->SetFormula(1, 1, block);
  SetCell(*application, 1, 2, "");
  SetCell(*application, 1, 3, "again");
  ExpectFailure(1004, "Row 2", [&] { application->SetFormula(1, 1, block); });
  ExpectFailure(1004, "Row 2", [&] { SetCell(*application, 2, 9, "x"); });
  ExpectFailure(1004, "B:B", [&] { application->SetColumnsNumberFormat("B:B", "0"); });
  const std::map<std::string, std::string> expected = {{"Sheet1!A1", "number:1|49"},
                                                       {"Sheet1!C1", "text:again|49"},
                                                       {"Sheet1!D1", "number:1"},
                                                       {"Sheet1!E1", "number:1|0.0 \"<pcs>\""},
                                                       {"Sheet1!A2", "number:1|49"},
                                                       {"Sheet1!C2", "number:1|49"},
                                                       {"Sheet1!E2", "number:1|0.0 \"<pcs>\""}};
  EXPECT_EQ(Saved(*application), expected);
}

TEST_F(SpreadsheetTest, WhatWasSavedLastIsCommittedInPlaceOfAnOldWorkbook) {
  files_.files["book.xlsX"] = "old";
  output_ = spreadsheet_.NewOutput("book.xlsX", true);
  StartNew()->SaveAs("book.xlsX", kOpenXmlWorkbook);
  const auto application = Start();
  application->OpenWorkbook("book.xlsX");
  SetCell(*application, 2, 1, "saved");
  application->SaveAs("book.xlsX", kOpenXmlWorkbook);
  SetCell(*application, 1, 1, "not saved");
  SetCell(*application, 3, 1, "not saved");
  ExpectFailure(1004, "the same run has saved", [&] { Start()->OpenWorkbook("book.xlsX"); });
  ExpectFailure(1004, "has begun it", [&] { Start()->AddWorkbook(); });
  EXPECT_EQ(files_.files["book.xlsX"], "old");
  output_->Commit();
  const std::map<std::string, std::string> expected = {{"Sheet1!A2", "text:saved"}};
  EXPECT_EQ(CellsOf(files_.files["book.xlsX"]), expected);

  files_.refused.insert("locked.xlsX");
  ExpectFailure(75, "locked.xlsX", [&] { spreadsheet_.NewOutput("locked.xlsX", true); });
  output_ = spreadsheet_.NewOutput("locked.xlsX", false);
  StartNew()->SaveAs("locked.xlsX", kOpenXmlWorkbook);
  ExpectFailure(75, "locked.xlsX", [&] { output_->Commit(); });
}

/// A row as a grid has them: texts that repeat and texts of its own, amounts and gaps.
void FillRow(CellBlock& block, std::size_t row, std::size_t number) {
  block.SetText(row, 1, "0");
  block.SetText(row, 2, "line <" + std::to_string(number) + ">");
  block.SetText(row, 3, number % 7 == 0 ? " \xD7\x90\t" : "Freight and handling");
  block.SetText(row, 4, number == 600 ? std::string(40'000, '\xFF').substr(0, kMaxTextUnits) : "");
  block.SetNumber(row, 12, static_cast<double>(number * 7919 % 100'003) / 100);
  if (number % 3 != 0) block.SetNumber(row, 14, -1.0 / static_cast<double>(number));
}

/// Passes of a run with so many rows.
void WritePasses(OutputWorkbook& output, const std::vector<std::size_t>& rows) {
  std::size_t number = 1;
  for (std::size_t pass = 0; pass < rows.size(); ++pass) {
    const auto application = output.NewApplication();
    if (pass == 0) {
      application->AddWorkbook();
      application->SetColumnsNumberFormat("A:K", "@");
    } else {
      application->OpenWorkbook("book.xlsX");
      EXPECT_EQ(application->CurrentRegionRows("A1"), std::max<std::size_t>(number, 1));
    }
    for (std::size_t left = rows[pass]; left > 0;) {
      const std::size_t count = std::min(left, application->RowsAtOnce());
      CellBlock block(count, 14);
      for (std::size_t row = 1; row <= count; ++row) FillRow(block, row, number + row);
      application->SetFormula(number + 1, 1, std::move(block));
      number += count;
      left -= count;
    }
    application->SetFormula(1, 12, Block(1, 1, "Q1>"));
    application->SaveAs("book.xlsX", kOpenXmlWorkbook);
  }
}

void Write(OutputWorkbook& output, const std::vector<std::size_t>& rows) {
  WritePasses(output, rows);
  output.Commit();
}

TEST_F(SpreadsheetTest, ThreadsAndBlocksChangeNothingOfTheRows) {
  const std::vector<std::size_t> cases[] = {{0}, {1}, {256}, {257}, {1, 1}, {600, 300}, {5000}};
  for (const std::vector<std::size_t>& rows : cases) {
    std::string first;
    for (const unsigned threads : {1u, 2u, 4u}) {
      Write(*XlsxSpreadsheet(files_, {}, threads).NewOutput("book.xlsX", false), rows);
      const std::string& file = files_.files.at("book.xlsX");
      if (first.empty()) first = file;
      EXPECT_TRUE(file == first) << threads << " threads";
    }
    const auto cells = CellsOf(first);
    std::size_t expected = 1;
    for (std::size_t number = 2; cells.contains("Sheet1!A" + std::to_string(number)); ++number) {
      const std::string row = std::to_string(number);
      EXPECT_EQ(cells.at("Sheet1!B" + row), "text:line <" + row + ">|49");
      EXPECT_EQ(std::stod(cells.at("Sheet1!L" + row).substr(7)),
                static_cast<double>(number * 7919 % 100'003) / 100);
      expected = number;
    }
    EXPECT_EQ(expected - 1, std::accumulate(rows.begin(), rows.end(), std::size_t{0}));
  }
}

/// Texts of so many letters that cannot be packed well.
CellBlock RandomTexts(std::size_t rows, std::size_t letters) {
  std::mt19937 random(1);
  CellBlock block(rows, 1);
  std::string text(letters, ' ');
  for (std::size_t row = 1; row <= rows; ++row) {
    for (char& letter : text) letter = static_cast<char>('@' + random() % 64);
    block.SetText(row, 1, text);
  }
  return block;
}

TEST_F(SpreadsheetTest, ADiskThatGivesUpLeavesNoWorkbook) {
  test::FailingFiles failing(files_, Failure(failure_number::kDiskFull, "Disk full"));
  const auto write = [&](std::initializer_list<CellBlock> blocks) {
    failing.calls = 0;
    XlsxSpreadsheet spreadsheet(failing, {}, 2);
    const auto output = spreadsheet.NewOutput("book.xlsX", false);
    const auto application = output->NewApplication();
    application->AddWorkbook();
    std::size_t row = 2;
    for (const CellBlock& rows : blocks) {
      application->SetFormula(row, 1, rows);
      row += rows.rows();
    }
    application->SaveAs("book.xlsX", kOpenXmlWorkbook);
    output->Commit();
  };
  const auto expect_none = [&](const CellBlock& rows) {
    const Failure failure = test::FailureOf([&] { write({rows}); });
    EXPECT_EQ(failure.number(), failure_number::kDiskFull) << failing.fail_at;
    EXPECT_TRUE(files_.files.empty()) << failing.fail_at;
  };
  failing.fail_at = 2;  // what memory does not hold is put aside
  const CellBlock many = RandomTexts(50, kMaxTextUnits);
  expect_none(many);
  failing.fail_at = 0;
  const CellBlock few = RandomTexts(40, 10'000);
  write({many, few});
  auto cells = CellsOf(files_.files.at("book.xlsX"));
  EXPECT_EQ(cells.size(), 90u);
  EXPECT_EQ(cells["Sheet1!A51"], "text:" + std::string(many.Text(many.Row(50)[0])));
  EXPECT_EQ(cells["Sheet1!A91"], "text:" + std::string(few.Text(few.Row(40)[0])));
  write({few});
  files_.files.clear();
  for (failing.fail_at = failing.calls; failing.fail_at > 0; --failing.fail_at) expect_none(few);
}

/// Allocations until one fails; none does when it is below 0.
std::atomic<int> allocations_left = -1;

TEST_F(SpreadsheetTest, WithoutMemoryTheRunFailsOrIsWhole) {
  Write(*output_, {600, 300});
  const std::string whole = std::exchange(files_.files["book.xlsX"], "");
  for (int allocations = 1;; allocations += 1 + allocations / 8) {
    XlsxSpreadsheet spreadsheet(files_, {}, 3);
    const auto output = spreadsheet.NewOutput("book.xlsX", false);
    bool is_saved = false;
    allocations_left = allocations;
    try {
      WritePasses(*output, {600, 300});
      is_saved = true;
    } catch (const std::bad_alloc&) {
    }
    const bool had_enough = allocations_left.exchange(-1) > 0;
    if (!is_saved) continue;
    output->Commit();
    EXPECT_TRUE(files_.files["book.xlsX"] == whole) << allocations;
    if (had_enough) break;
  }
}

TEST_F(SpreadsheetTest, ALookChangesNoCell) {
  const WorkbookLook look{.title = "A & <B>",
                          .captions = 11,
                          .formats = {"#,##0.###_);(#,##0.###)", "0", "#,##0.00"},
                          .right_to_left = true,
                          .letter_paper = true};
  constexpr int64_t kLastOf1999 = 946'684'799;
  std::map<std::string, std::string> cells[2], parts[2];
  for (const bool looks : {false, true}) {
    XlsxSpreadsheet spreadsheet(files_, [] { return kLastOf1999; });
    const auto output = spreadsheet.NewOutput("book.xlsX", false);
    if (looks) output->SetLook(look);
    Write(*output, {300, 20});
    parts[looks] = Unpacked(files_.files["book.xlsX"]);
    for (const auto& [place, cell] : CellsOf(files_.files["book.xlsX"])) {
      cells[looks][place] = cell.substr(0, cell.rfind('|'));
    }
  }
  EXPECT_EQ(cells[0], cells[1]);
  const auto with_look = CellsOf(files_.files["book.xlsX"]);
  const auto format = [&](const char* place) {
    return with_look.at(place).substr(with_look.at(place).rfind('|'));
  };
  EXPECT_EQ(format("Sheet1!L2") + format("Sheet1!B2"), "|#,##0.###_);(#,##0.###)|49");
  EXPECT_EQ(format("Sheet1!L302"), format("Sheet1!L2")) << "the first row of the second pass";
  for (const auto& [name, part] : parts[1]) Parsed(part);
  const pugi::xml_document sheet = Parsed(parts[1].at("xl/worksheets/sheet1.xml"));
  const auto root = sheet.child("worksheet");
  EXPECT_STREQ(root.child("ignoredErrors").child("ignoredError").attribute("sqref").value(),
               "A1:K321");
  EXPECT_STREQ(root.child("headerFooter").child("oddFooter").text().get(), "&LA && <B>&R&P / &N");
  EXPECT_TRUE(root.child("sheetViews").first_child().attribute("rightToLeft").as_bool());
  EXPECT_STREQ(root.child("pageSetup").attribute("paperSize").value(), "1");
  const pugi::xml_document core = Parsed(parts[1].at("docProps/core.xml"));
  const auto about = core.child("cp:coreProperties");
  EXPECT_STREQ(about.child("dc:title").text().get(), "A & <B>");
  EXPECT_STREQ(about.child("dcterms:created").text().get(), "1999-12-31T23:59:59Z");
  const pugi::xml_document styles = Parsed(parts[1].at("xl/styles.xml"));
  const auto lined = root.child("sheetData").find_child_by_attribute("r", "302").first_child();
  auto style = styles.child("styleSheet").child("cellXfs").first_child();
  for (int left = lined.attribute("s").as_int(); left > 0; --left) style = style.next_sibling();
  EXPECT_STREQ(style.attribute("borderId").value(), "1");
}

TEST_F(SpreadsheetTest, MisuseIsAFailureThatSaysWhat) {
  const auto application = Start();
  EXPECT_EQ(application->Version(), "16.0");
  ExpectFailure(91, "No workbook is open", [&] { application->WorksheetCount(); });
  application->AddWorkbook();
  EXPECT_EQ(application->WorksheetName(1), "Sheet1");
  ExpectFailure(1004, "open already", [&] { application->AddWorkbook(); });
  ExpectFailure(9, "no sheet 0", [&] { application->SelectWorksheet(0); });
  ExpectFailure(9, "no sheet 2", [&] { (void)application->WorksheetName(2); });
  ExpectFailure(1004, "\"B1\"", [&] { (void)application->CurrentRegionRows("B1"); });
  ExpectFailure(1004, "\"A:XFE\"", [&] { application->SetColumnsNumberFormat("A:XFE", "@"); });
  ExpectFailure(1004, "format 6", [&] { application->SaveAs("a.csv", 6); });
  const std::string thirty_two(32, 'n');
  for (const char* name : {"", thirty_two.c_str(), "a/b", "'a", "a\tb", "\xFF"}) {
    ExpectFailure(1004, "cannot be named", [&] { application->SetActiveSheetName(name); });
  }
  application->SetActiveSheetName(thirty_two.substr(1));
  ExpectFailure(1004, "cannot be saved as", [&] { application->SaveAs("other.xlsX", 51); });
  application->Quit();
  ExpectFailure(91, "No workbook is open", [&] { application->SaveAs("book.xlsX", 51); });
  ExpectFailure(91, "No workbook was saved", [&] { output_->Commit(); });
  for (const char* path : {"book.xlsX", "other.xlsX"}) {
    files_.files[path] = "of another run";
    ExpectFailure(1004, path, [&, path] { application->OpenWorkbook(path); });
  }
}

}  // namespace
}  // namespace vok::xlsx

// Not inlined: the compiler would take malloc and delete for a pair that does not fit.
// NOLINTBEGIN(cppcoreguidelines-no-malloc)
[[gnu::noinline]] void* operator new(std::size_t size) {
  auto& left = vok::xlsx::allocations_left;
  void* memory = left > 0 && --left == 0 ? nullptr : std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
// NOLINTEND(cppcoreguidelines-no-malloc)
