#include <limits>

#include "platform/failure.h"
#include "platform/text.h"
#include "providers/workbook/xlsx/cell_reference.h"
#include "providers/workbook/xlsx/text_rules.h"
#include "providers/workbook/xlsx/xlsx_spreadsheet.h"
#include "providers/workbook/xlsx/zip_writer.h"
#include "tests/support/memory_host.h"
#include "workbook_tools.h"

namespace vok::xlsx {
namespace {

class SpreadsheetTest : public testing::Test {
 protected:
  std::unique_ptr<SpreadsheetApplication> Start() { return output_->NewApplication(); }

  std::unique_ptr<SpreadsheetApplication> StartNew() {
    auto application = Start();
    application->AddWorkbook();
    return application;
  }

  static void SetCell(SpreadsheetApplication& application, std::size_t row, std::size_t column,
                      Value value) {
    CellBlock block(1, 1);
    block.At(1, 1) = std::move(value);
    application.SetFormula(row, column, block);
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
      {int16_t{-5}, "number:-5"},
      {int32_t{2147483647}, "number:2147483647"},
      {true, "boolean:1"},
      {Date::FromCivil(1900, 3, 1), "number:61|14"},
      {"0", "text:0"},
      {"=1+1", "text:=1+1"},
      {" \t outer blanks \n ", "text: \t outer blanks \n "},
      {std::string("nul \0 and \x1F\r", 12), "text:nul _x0000_ and _x001F__x000D_"},
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
      {Date::FromCivil(1900, 2, 28), 1004, "1 March 1900"},
      {Value::Array(), 13, "a value of this type"},
      {CellError{"overflow"}, 13, "a value of this type"},
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
  CellBlock tall(2, 1);
  CellBlock wide(1, 2);
  tall.values.assign(2, 1.0);
  wide.values.assign(2, 2.0);
  for (const std::size_t back : {2, 1}) {
    application->SetFormula(kMaxRows - back, 1, tall);
    application->SetFormula(1, kMaxColumns - back, wide);
  }
  for (const std::size_t row : {kMaxRows, kMaxRows + 1, 0u}) {
    ExpectFailure(1004, "Split the query", [&] { application->SetFormula(row, 1, tall); });
  }
  for (const std::size_t column : {kMaxColumns, kMaxColumns + 1, 0u}) {
    ExpectFailure(1004, "sheet \"Sheet1\"", [&] { application->SetFormula(1, column, wide); });
  }
  const std::map<std::string, std::string> expected = {
      {"Sheet1!A1048574", "number:1"}, {"Sheet1!A1048575", "number:1"},
      {"Sheet1!A1048576", "number:1"}, {"Sheet1!XFB1", "number:2"},
      {"Sheet1!XFC1", "number:2"},     {"Sheet1!XFD1", "number:2"}};
  EXPECT_EQ(Saved(*application), expected);
}

TEST_F(SpreadsheetTest, BlankValuesClearAndFormatsStay) {
  const auto application = StartNew();
  SetCell(*application, 2, 2, "old");
  application->SetColumnsNumberFormat("C:A", "@");
  application->SetColumnsNumberFormat("E:E", "0.0 \"<pcs>\"");
  CellBlock block(2, 5);
  block.values.assign(10, 1.0);
  block.At(2, 2) = "";
  block.At(2, 3) = Null{};
  block.At(2, 4) = Value();
  application->SetFormula(1, 1, block);
  const std::map<std::string, std::string> expected = {{"Sheet1!A1", "number:1|49"},
                                                       {"Sheet1!B1", "number:1|49"},
                                                       {"Sheet1!C1", "number:1|49"},
                                                       {"Sheet1!D1", "number:1"},
                                                       {"Sheet1!E1", "number:1|0.0 \"<pcs>\""},
                                                       {"Sheet1!A2", "number:1|49"},
                                                       {"Sheet1!E2", "number:1|0.0 \"<pcs>\""}};
  EXPECT_EQ(Saved(*application), expected);
}

TEST_F(SpreadsheetTest, AnOldWorkbookStaysUntilTheSavedOneIsCommitted) {
  files_.files["book.xlsX"] = "old";
  output_ = spreadsheet_.NewOutput("book.xlsX", true);
  const auto application = StartNew();
  SetCell(*application, 1, 1, "saved");
  application->SaveAs("book.xlsX", kOpenXmlWorkbook);
  SetCell(*application, 1, 1, "not saved");
  EXPECT_EQ(files_.files["book.xlsX"], "old");
  output_->Commit();
  const std::map<std::string, std::string> expected = {{"Sheet1!A1", "text:saved"}};
  EXPECT_EQ(CellsOf(files_.files["book.xlsX"]), expected);

  files_.refused.insert("locked.xlsX");
  ExpectFailure(75, "locked.xlsX", [&] { spreadsheet_.NewOutput("locked.xlsX", true); });
  output_ = spreadsheet_.NewOutput("locked.xlsX", false);
  StartNew()->SaveAs("locked.xlsX", kOpenXmlWorkbook);
  ExpectFailure(75, "locked.xlsX", [&] { output_->Commit(); });
}

TEST_F(SpreadsheetTest, APartThatPacksTooWellToBeBelievedComesBack) {
  const std::string even((std::size_t{64} << 20) + 1, ' ');
  ZipWriter writer("even");
  writer.Add("part", even);
  const ByteBuffer file = writer.Finish();
  EXPECT_GT(file.size(), even.size());
  EXPECT_EQ(Unpacked(file.View()).at("part"), even);
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
  ExpectFailure(1004, "\"A1:\"", [&] { (void)application->CurrentRegionRows("A1:"); });
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
