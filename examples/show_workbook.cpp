// Prints the first rows of a workbook's first sheet, the chosen columns side by side.
//
//   vok_examples_show WORKBOOK ROWS COLUMN...      columns by letter: B C L M
#include <algorithm>
#include <charconv>
#include <fstream>
#include <iostream>
#include <iterator>
#include <span>
#include <stdexcept>

#include "providers/xlsx/workbook.h"

namespace {

using vok::xlsx::Cell;
using vok::xlsx::CellKind;
using vok::xlsx::Workbook;

struct Shown {
  std::string text;
  bool right = false;  // numbers stand at the right
};

Shown Show(const Workbook& book, const Cell* cell) {
  if (cell == nullptr || cell->kind == CellKind::kBlank) return {};
  if (cell->kind == CellKind::kText) return {std::string(book.texts.At(cell->text))};
  char buffer[512];
  auto format = cell->number == static_cast<double>(static_cast<long long>(cell->number)) ? 0 : 2;
  auto [end, error] =
      std::to_chars(buffer, buffer + sizeof buffer, cell->number, std::chars_format::fixed, format);
  return {std::string(buffer, end), true};
}

size_t Width(const std::string& text) {
  return static_cast<size_t>(std::ranges::count_if(
      text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

Workbook Open(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + path);
  std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  return vok::xlsx::ReadWorkbook(std::as_bytes(std::span(bytes)), path);
}

void PrintColumns(const std::vector<std::vector<Shown>>& columns, size_t rows) {
  for (size_t row = 0; row < rows; ++row) {
    std::string line;
    for (const std::vector<Shown>& column : columns) {
      size_t width = 0;
      for (const Shown& cell : column) width = std::max(width, Width(cell.text));
      const Shown& cell = column[row];
      std::string blanks(width - Width(cell.text), ' ');
      line += "  " + (cell.right ? blanks + cell.text : cell.text + blanks);
    }
    std::cout << line << '\n';
  }
}

void ShowWorkbook(std::span<char*> arguments) {
  if (arguments.size() < 4) throw std::runtime_error("usage: WORKBOOK ROWS COLUMN...");
  Workbook book = Open(arguments[1]);
  uint32_t rows = 0;
  std::string_view count = arguments[2];
  std::from_chars(count.data(), count.data() + count.size(), rows);
  rows = std::min<uint32_t>(rows, static_cast<uint32_t>(book.sheets.at(0).rows().size()));
  std::vector<std::vector<Shown>> columns;
  for (std::string letter : arguments.subspan(3)) {
    auto place = vok::xlsx::ParseCell(letter + "1");
    if (!place) throw std::runtime_error("no column: " + letter);
    std::vector<Shown>& column = columns.emplace_back();
    for (uint32_t row = 1; row <= rows; ++row)
      column.push_back(Show(book, book.sheets[0].Find({row, place->column})));
  }
  PrintColumns(columns, rows);
}

}  // namespace

int main(int count, char** arguments) {
  try {
    ShowWorkbook({arguments, static_cast<size_t>(count)});
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "show: " << error.what() << '\n';
    return 1;
  }
}
