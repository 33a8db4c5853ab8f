#include "component/workbook_writer.h"

#include <gmock/gmock.h>

#include "component/workbook_look.h"
#include "tests/support/component_host.h"
#include "tests/support/failures.h"

namespace vok::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using Lines = std::vector<std::string>;

/// Rows of 13 blank cells.
struct BlankRows : GridRows {
  explicit BlankRows(std::size_t count) : left(count) {}
  CellBlock Next(std::size_t most) override {
    const std::size_t count = std::min(most, left);
    left -= count;
    return {count, 13};
  }
  std::size_t left;
};

TEST(SheetFormat, IsThatOfTheMeasureWhereAllProgramsKnowIt) {
  for (const char* known : {"#,##0.00", "0", "#0.0", "##,###,000", "0.##%"}) {
    EXPECT_EQ(SheetFormat(known, "0.0", "-1"), known);
  }
  for (const char* odd :
       {"", ",", "#.", "#,##0.", ",0", "0.0.0", "0.0,0", "[Red]0", "0;0", "a", "%"}) {
    EXPECT_EQ(SheetFormat(odd, "0.0", "-1"), "0.0") << odd;
  }
  EXPECT_EQ(SheetFormat("percent", "0", "-1"), "0.00%");
  EXPECT_EQ(SheetFormat("", "#,##0", "(1)"), "#,##0_);(#,##0)");
  EXPECT_EQ(SheetFormat("", "0.0", "1 -"), "0.0_ _-;0.0 -");
  EXPECT_EQ(SheetFormat("", "0.0", "*1"), "0.0");
}

struct WorkbookWriterTest : ::testing::Test, ComponentHost {
  WorkbookWriterTest() {
    periods.Period(1).PeriodName = "Jan 2016";
    periods.Period(12).PeriodName = "Dec";
  }

  void Write(bool append) {
    BlankRows grid(5);
    Arrtoxls(host, grid, output, append, periods);
  }

  PeriodSet periods;
  RunOutput output = NewRunOutput(host, "out.xlsX", false);
};

TEST_F(WorkbookWriterTest, OpensWritesLabelsAndSavesInOrder) {
  sheets.record.sheets = {"Sheet1", "DATA", "Data2", "data"};
  sheets.record.region_rows = 7;
  sheets.record.rows_at_once = 3;
  memory.files.files["out.xlsX"] = "first";
  const struct {
    bool append;
    Lines opening;
  } cases[] = {
      {true, {"open out.xlsX", "select 2", "select 4", "region A1", "formula 8,1", "formula 11,1"}},
      {false, {"add", "select 1", "name Data", "format A:K @", "formula 1,1", "formula 4,1"}}};
  for (auto [append, opening] : cases) {
    sheets.record.lines.clear();
    sheets.record.blocks.clear();
    Write(append);
    EXPECT_EQ(memory.files.files.contains("out.xlsX"), append);
    Lines lines{"create", "alerts off", "version"};
    for (int column = 12; column <= 35; ++column) {
      opening.push_back("formula 1," + std::to_string(column));
    }
    for (const Lines& part :
         {opening, Lines{"save out.xlsX 51", "updating on", "alerts on", "quit", "release"}}) {
      lines.insert(lines.end(), part.begin(), part.end());
    }
    EXPECT_THAT(sheets.record.lines, ElementsAreArray(lines));
  }
  EXPECT_EQ(sheets.record.blocks[1].rows(), 2u);
  for (const auto& [block, label] :
       {std::pair{2, "Q1>Jan 2016"}, {3, "M1>Jan 2016"}, {14, "Q7>"}, {25, "M12>Dec"}}) {
    EXPECT_EQ(sheets.record.blocks.at(block).ValueAt(1, 1), Value(label));
  }
}

TEST_F(WorkbookWriterTest, StaysOnTheActiveSheetWhenThereIsNoDataSheet) {
  sheets.record.sheets = {"Sheet1"};
  Write(true);
  EXPECT_EQ(sheets.record.lines[4], "region A1");
}

TEST_F(WorkbookWriterTest, NewerVersionsAreToldTheFormat) {
  for (const auto& [version, format] :
       {std::pair{"16.0", "51"}, {"12.0", "51"}, {"11.0", "0"}, {"9", "0"}}) {
    sheets.record.lines.clear();
    sheets.record.version = version;
    Write(false);
    EXPECT_THAT(sheets.record.lines, Contains(std::string("save out.xlsX ") + format)) << version;
  }
}

TEST_F(WorkbookWriterTest, FailuresLetTheProgramGoAreReportedAndThrownOn) {
  for (const char* failing :
       {"alerts off", "add", "formula 1,1", "formula 1,35", "save out.xlsX 51", "quit"}) {
    sheets.record.lines.clear();
    sheets.record.failing = failing;
    memory.boxes.boxes.clear();
    EXPECT_EQ(NumberOf([&] { Write(false); }), failure_number::kAutomation) << failing;
    EXPECT_EQ(sheets.record.lines.back(), "release") << failing;
    ASSERT_EQ(memory.boxes.boxes.size(), 1u) << failing;
    EXPECT_THAT(memory.boxes.boxes[0].text, HasSubstr("Function : Arrtoxls\r\nModule : ModXls"));
  }
}

TEST_F(WorkbookWriterTest, AnOldWorkbookGoesBeforeAnythingIsWrittenUnlessItIsKept) {
  memory.files.files["out.xlsX"] = "old";
  Write(false);
  EXPECT_FALSE(memory.files.files.contains("out.xlsX"));

  memory.files.files["out.xlsX"] = "old";
  memory.files.refused.insert("out.xlsX");
  sheets.record.lines.clear();
  EXPECT_THROW(Write(false), Failure);
  EXPECT_EQ(sheets.record.lines, (Lines{"create", "release"}));
  EXPECT_EQ(memory.files.files["out.xlsX"], "old");

  output.keep_old = true;
  Write(false);
  EXPECT_EQ(memory.files.files["out.xlsX"], "old");

  memory.files.folders.insert("folder.xlsX");
  for (const bool keep_old : {false, true}) {
    EXPECT_EQ(NumberOf([&] { NewRunOutput(host, "folder.xlsX", keep_old); }),
              failure_number::kPathAccess);
  }
}

TEST_F(WorkbookWriterTest, AWorkbookThatIsThereButMayNotLastIsTold) {
  sheets.record.on_commit = [] { throw FileMayNotLast(57, "is in its place"); };
  CommitWorkbook(host, output);
  ASSERT_EQ(memory.boxes.boxes.size(), 1u);
  EXPECT_THAT(memory.boxes.boxes[0].text, HasSubstr("is in its place"));
  sheets.record.on_commit = [] { throw Failure(57, "not written"); };
  EXPECT_EQ(NumberOf([&] { CommitWorkbook(host, output); }), 57);
  EXPECT_THAT(memory.boxes.boxes.at(1).text, HasSubstr("Function : Arrtoxls"));
}

}  // namespace
}  // namespace vok::test
