#include "providers/workbook/xlsx/sheet.h"

#include <algorithm>

namespace vok::xlsx {
namespace {

template <typename Rows>
auto FindRow(Rows& rows, uint32_t number) {
  return std::lower_bound(rows.begin(), rows.end(), number,
                          [](const Row& row, uint32_t wanted) { return row.number < wanted; });
}

template <typename Cells>
auto FindCell(Cells& cells, uint32_t column) {
  return std::lower_bound(cells.begin(), cells.end(), column,
                          [](const Cell& cell, uint32_t wanted) { return cell.column < wanted; });
}

}  // namespace

Cell Cell::Number(double value) {
  Cell cell;
  cell.kind = CellKind::kNumber;
  cell.number = value;
  return cell;
}

Cell Cell::Boolean(bool value) {
  Cell cell = Number(value ? 1 : 0);
  cell.kind = CellKind::kBoolean;
  return cell;
}

Cell Cell::Text(uint32_t number) {
  Cell cell;
  cell.kind = CellKind::kText;
  cell.text = number;
  return cell;
}

uint16_t Sheet::ColumnFormat(uint32_t column) const {
  return column <= column_formats_.size() ? column_formats_[column - 1] : uint16_t{0};
}

Row& Sheet::RowAt(uint32_t number) {
  if (rows_.empty() || rows_.back().number < number) return rows_.emplace_back(Row{number, {}});
  const auto row = FindRow(rows_, number);
  return row->number == number ? *row : *rows_.insert(row, Row{number, {}});
}

void Sheet::Assign(CellPlace place, std::span<const Cell> contents) {
  std::vector<Cell>& cells = RowAt(place.row).cells;
  const auto first = FindCell(cells, place.column);
  std::vector<Cell> fresh;
  fresh.reserve(contents.size());
  auto old = first;
  for (std::size_t i = 0; i < contents.size(); ++i) {
    const auto column = static_cast<uint16_t>(place.column + i);
    const uint16_t usual = ColumnFormat(column);
    Cell cell = contents[i];
    cell.column = column;
    const uint16_t here = old != cells.end() && old->column == column ? (old++)->format : usual;
    if (here != 0) cell.format = here;
    if (cell.kind != CellKind::kBlank || cell.format != usual) fresh.push_back(cell);
  }
  if (cells.empty()) {
    cells = std::move(fresh);
  } else {
    cells.insert(cells.erase(first, old), fresh.begin(), fresh.end());
  }
}

void Sheet::SetColumnsFormat(ColumnRange range, uint16_t format) {
  if (column_formats_.size() < range.last) column_formats_.resize(range.last);
  std::fill(column_formats_.begin() + range.first - 1, column_formats_.begin() + range.last,
            format);
  for (Row& row : rows_) {
    auto cell = FindCell(row.cells, range.first);
    for (; cell != row.cells.end() && cell->column <= range.last; ++cell) cell->format = format;
  }
}

}  // namespace vok::xlsx
