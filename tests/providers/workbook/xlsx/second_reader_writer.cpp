// Writes a workbook the way a run does, appending included, and the cells that another program must
// find in it, row by row, with a NUL after each.
//
//   second_reader_writer BOOK.xlsX EXPECTED
#include <charconv>
#include <fstream>

#include "providers/workbook/xlsx/xlsx_spreadsheet.h"
#include "tests/support/memory_host.h"

namespace {

using namespace vok;

CellBlock Lines(std::size_t first, std::size_t count) {
  const std::string texts[] = {"0",
                               "007",
                               "=1+1",
                               "12/31/2024",
                               "TRUE",
                               "  outer blanks ",
                               "tab\tand\nline",
                               "<a & \"b\">, 'c'",
                               "_x0041_",
                               "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xD0\x9C\xD0\xB8\xD1\x80 \xC3\xBC",
                               "\xF0\x9F\x98\x80"};
  const double numbers[] = {0.1 + 0.2, -1234567.89, 1e300, 1.0 / 3.0, 9007199254740993.0, 4e-7};
  CellBlock block(count, 13);
  for (std::size_t row = 1; row <= count; ++row) {
    const std::size_t line = first + row;
    block.At(row, 1) = "0";
    for (std::size_t column = 2; column <= 11; ++column) {
      if ((line + column) % 7 != 0) block.At(row, column) = texts[(line * 3 + column) % 11];
    }
    block.At(row, 12) = numbers[line % 6];
    if (line % 3 != 0) block.At(row, 13) = numbers[(line + 1) % 6] / 7;
  }
  return block;
}

std::string Shown(const Value& value) {
  const double* number = value.As<double>();
  char digits[32];
  return number == nullptr ? value.ToText()
                           : std::string(digits, std::to_chars(digits, digits + 32, *number).ptr);
}

}  // namespace

int main(int, char** arguments) {
  test::MemoryFiles files;
  xlsx::XlsxSpreadsheet spreadsheet(files);
  const auto book = spreadsheet.NewOutput("book", false);
  const auto application = book->NewApplication();
  std::ofstream expected(arguments[2], std::ios::binary);
  application->AddWorkbook();
  application->SetActiveSheetName("Data");
  application->SetColumnsNumberFormat("A:K", "@");
  for (const std::size_t row : {1, 41}) {
    const CellBlock block = Lines(row - 1, row == 1 ? 40 : 20);
    if (row != 1) application->OpenWorkbook("book");
    application->SetFormula(row == 1 ? 1 : application->CurrentRegionRows("A1") + 1, 1, block);
    application->SaveAs("book", kOpenXmlWorkbook);
    application->Quit();
    for (const Value& value : block.values) expected << Shown(value) << '\0';
  }
  book->Commit();
  std::ofstream(arguments[1], std::ios::binary) << files.files.at("book");
}
