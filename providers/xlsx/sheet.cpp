#include "providers/xlsx/sheet.h"

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

Cell Cell::Error(uint32_t number) {
  Cell cell = Text(number);
  cell.kind = CellKind::kError;
  return cell;
}

uint16_t Sheet::ColumnFormat(uint32_t column) const {
  return column <= columns_.size() ? columns_[column - 1].format : uint16_t{0};
}

const Cell* Sheet::Find(CellPlace place) const {
  const auto row = FindRow(rows_, place.row);
  if (row == rows_.end() || row->number != place.row) return nullptr;
  const auto cell = FindCell(row->cells, place.column);
  return cell != row->cells.end() && cell->column == place.column ? &*cell : nullptr;
}

bool Sheet::IsBlank(CellPlace place) const {
  const Cell* cell = Find(place);
  return cell == nullptr || cell->kind == CellKind::kBlank;
}

Row& Sheet::RowAt(uint32_t number) {
  if (rows_.empty() || rows_.back().number < number) return rows_.emplace_back(Row{number, {}});
  const auto row = FindRow(rows_, number);
  return row->number == number ? *row : *rows_.insert(row, Row{number, {}});
}

void Sheet::AppendCell(uint32_t row, const Cell& cell) {
  if (rows_.empty() || rows_.back().number != row) {
    const std::size_t likely = rows_.empty() ? 0 : rows_.back().cells.size();
    rows_.emplace_back(Row{row, {}}).cells.reserve(likely);
  }
  rows_.back().cells.push_back(cell);
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

void Sheet::GrowColumns(uint32_t count) {
  if (columns_.size() < count) columns_.resize(count);
}

void Sheet::SetColumnsFormat(ColumnRange range, uint16_t format) {
  GrowColumns(range.last);
  for (uint32_t column = range.first; column <= range.last; ++column) {
    columns_[column - 1].format = format;
  }
  for (Row& row : rows_) {
    auto cell = FindCell(row.cells, range.first);
    for (; cell != row.cells.end() && cell->column <= range.last; ++cell) cell->format = format;
  }
}

void Sheet::SetColumns(ColumnRange range, const Column& column) {
  GrowColumns(range.last);
  std::fill(columns_.begin() + range.first - 1, columns_.begin() + range.last, column);
}

}  // namespace vok::xlsx
