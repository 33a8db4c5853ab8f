// Writes a workbook the way a run does, appending included, and the cells that another program must
// find in it: one line per row, cells as JSON.
//
//   second_reader_writer BOOK.xlsX EXPECTED.json
#include <charconv>
#include <fstream>
#include <iostream>

#include "platform/failure.h"
#include "providers/xlsx/xlsx_spreadsheet.h"
#include "tests/support/memory_host.h"

namespace {

using namespace vok;

constexpr std::size_t kColumns = 13;

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
  CellBlock block(count, kColumns);
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

std::string Json(const Value& value) {
  if (const double* number = value.As<double>()) {
    char digits[32];
    return std::string(digits, std::to_chars(digits, digits + 32, *number).ptr);
  }
  std::string text = "\"";
  for (const char c : value.ToText()) {
    if (c == '"' || c == '\\') text += '\\';
    if (c == '\t') text += "\\t";
    if (c == '\n') text += "\\n";
    if (c != '\t' && c != '\n') text += c;
  }
  return text + '"';
}

void Print(std::ostream& out, const CellBlock& block) {
  for (std::size_t row = 1; row <= block.rows; ++row) {
    out << '[';
    for (std::size_t column = 1; column <= kColumns; ++column) {
      out << (column > 1 ? ", " : "") << Json(block.At(row, column));
    }
    out << "]\n";
  }
}

std::string WriteAndAppend(const CellBlock& first, const CellBlock& second) {
  test::MemoryFiles files;
  const auto application = xlsx::XlsxSpreadsheet(files).NewApplication();
  application->AddWorkbook();
  application->SetActiveSheetName("Data");
  application->SetColumnsNumberFormat("A:K", "@");
  application->SetFormula(1, 1, first);
  application->SaveAs("book", kOpenXmlWorkbook);
  application->Quit();
  application->OpenWorkbook("book");
  application->SetFormula(application->CurrentRegionRows("A1") + 1, 1, second);
  application->SaveAs("book", kOpenXmlWorkbook);
  return files.files.at("book");
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  try {
    const CellBlock first = Lines(0, 40);
    const CellBlock second = Lines(40, 20);
    std::ofstream(arguments[1], std::ios::binary) << WriteAndAppend(first, second);
    std::ofstream expected(arguments[2], std::ios::binary);
    Print(expected, first);
    Print(expected, second);
    return expected.good() ? 0 : 1;
  } catch (const Failure& failure) {
    std::cerr << failure.description() << "\n";
    return 1;
  }
}
