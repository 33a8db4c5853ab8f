#include "providers/workbook/xlsx/cell_reference.h"

#include <algorithm>

namespace vok::xlsx {
namespace {

void SkipDollar(std::string_view& rest) {
  if (rest.starts_with('$')) rest.remove_prefix(1);
}

/// Takes the letters at the front; 0 when there is no column of that name.
uint32_t TakeColumn(std::string_view& rest) {
  SkipDollar(rest);
  uint32_t column = 0;
  while (!rest.empty()) {
    const auto letter = static_cast<unsigned char>(rest[0] & ~0x20);
    if (letter < 'A' || letter > 'Z') break;
    column = column * 26 + (letter - 'A' + 1);
    if (column > kMaxColumns) return 0;
    rest.remove_prefix(1);
  }
  return column;
}

/// Takes the digits at the front; 0 when there is no row of that number.
uint32_t TakeRow(std::string_view& rest) {
  SkipDollar(rest);
  uint32_t row = 0;
  while (!rest.empty() && rest[0] >= '0' && rest[0] <= '9') {
    row = row * 10 + static_cast<uint32_t>(rest[0] - '0');
    if (row > kMaxRows) return 0;
    rest.remove_prefix(1);
  }
  return row;
}

}  // namespace

std::optional<CellPlace> ParseCell(std::string_view name) {
  CellPlace place;
  place.column = TakeColumn(name);
  place.row = TakeRow(name);
  if (place.row == 0 || place.column == 0 || !name.empty()) return std::nullopt;
  return place;
}

std::optional<ColumnRange> ParseColumns(std::string_view name) {
  const uint32_t one = TakeColumn(name);
  if (!name.starts_with(':')) return std::nullopt;
  name.remove_prefix(1);
  const uint32_t other = TakeColumn(name);
  if (one == 0 || other == 0 || !name.empty()) return std::nullopt;
  return ColumnRange{std::min(one, other), std::max(one, other)};
}

std::string ColumnName(uint32_t column) {
  std::string name;
  for (; column > 0; column = (column - 1) / 26) {
    name.insert(name.begin(), static_cast<char>('A' + (column - 1) % 26));
  }
  return name;
}

std::string CellName(std::size_t row, std::size_t column) {
  return ColumnName(static_cast<uint32_t>(column)) + std::to_string(row);
}

}  // namespace vok::xlsx
