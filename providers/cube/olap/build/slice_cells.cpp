#include "providers/cube/olap/build/slice_cells.h"

#include <algorithm>
#include <array>

#include "providers/cube/olap/storage/aggregate_block.h"

namespace vok::olap {
namespace {

bool IsSum(Aggregator aggregator) {
  return aggregator == Aggregator::kSum || aggregator == Aggregator::kCount;
}

int64_t Joined(Aggregator aggregator, int64_t a, int64_t b) {
  if (aggregator == Aggregator::kMin) return std::min(a, b);
  if (aggregator == Aggregator::kMax) return std::max(a, b);
  return a + b;
}

}  // namespace

SliceCells::SliceCells(const std::vector<AggregatedColumn>& columns, const NewFacts& facts,
                       std::size_t count)
    : present_(count) {
  for (const AggregatedColumn& column : columns) {
    const bool has_nulls = facts.values[column.value_column].format.has_nulls;
    columns_.push_back({column.aggregator, std::vector<int64_t>(count),
                        std::vector<uint8_t>(has_nulls ? count : 0)});
  }
}

void SliceCells::Clear() {
  std::fill(present_.begin(), present_.end(), uint8_t{0});
  for (Column& column : columns_) {
    std::fill(column.values.begin(), column.values.end(), 0);
    std::fill(column.validity.begin(), column.validity.end(), uint8_t{0});
  }
}

void SliceCells::AddRows(const NewFacts& facts, const std::vector<AggregatedColumn>& columns,
                         uint64_t first, std::span<const std::size_t> cells) {
  std::array<int64_t, kMostRows> values;
  std::array<int64_t, kMostRows> validity;
  // Column by column, so that whether a cell is new is asked before any column marks it.
  new_cells_.resize(cells.size());
  for (std::size_t row = 0; row < cells.size(); ++row) {
    new_cells_[row] = !present_[cells[row]];
    present_[cells[row]] = 1;
  }
  for (std::size_t index = 0; index < columns.size(); ++index) {
    const NewValueColumn& from = facts.values[columns[index].value_column];
    from.values(first, std::span(values).first(cells.size()));
    if (from.format.has_nulls) from.validity(first, std::span(validity).first(cells.size()));
    if (IsSum(columns_[index].aggregator)) {
      AddSums(columns_[index], cells, values.data(), validity.data());
      continue;
    }
    for (std::size_t row = 0; row < cells.size(); ++row) {
      if (from.format.has_nulls && validity[row] == 0) continue;
      Add(index, cells[row], values[row], new_cells_[row] != 0);
    }
  }
}

/// A cell is 0 before its first fact, as is a value that is NULL.
void SliceCells::AddSums(Column& column, std::span<const std::size_t> cells, const int64_t* values,
                         const int64_t* validity) {
  for (std::size_t row = 0; row < cells.size(); ++row) column.values[cells[row]] += values[row];
  if (column.validity.empty()) return;
  for (std::size_t row = 0; row < cells.size(); ++row) {
    column.validity[cells[row]] |= static_cast<uint8_t>(validity[row]);
  }
}

void SliceCells::AddCell(std::size_t cell, const SliceCells& other, std::size_t from) {
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    const Column& its = other.columns_[column];
    if (!its.validity.empty() && its.validity[from] == 0) continue;
    Add(column, cell, its.values[from], present_[cell] == 0);
  }
  present_[cell] = 1;
}

void SliceCells::AddCells(const SliceCells& other) {
  for (std::size_t cell = 0; cell < present_.size(); ++cell) {
    if (other.IsPresent(cell)) AddCell(cell, other, cell);
  }
}

std::string SliceCells::Block(std::size_t first, uint32_t count) {
  leaves_.clear();
  for (uint32_t leaf = 0; leaf < count; ++leaf) {
    if (present_[first + leaf]) leaves_.push_back(leaf);
  }
  if (leaves_.empty()) return {};
  std::vector<NewCellColumn> parts;
  for (Column& column : columns_) {
    column.part.resize(leaves_.size());
    column.valid_part.resize(column.validity.empty() ? 0 : leaves_.size());
    for (std::size_t i = 0; i < leaves_.size(); ++i) {
      column.part[i] = column.values[first + leaves_[i]];
      if (!column.validity.empty()) column.valid_part[i] = column.validity[first + leaves_[i]];
    }
    parts.push_back({column.part, column.valid_part});
  }
  return AggregateBlockBytes(count, leaves_, parts);
}

void SliceCells::Add(std::size_t column, std::size_t cell, int64_t value, bool is_new) {
  Column& to = columns_[column];
  const bool joins = to.validity.empty() ? !is_new : to.validity[cell] != 0;
  to.values[cell] = joins ? Joined(to.aggregator, to.values[cell], value) : value;
  if (!to.validity.empty()) to.validity[cell] = 1;
}

}  // namespace vok::olap
