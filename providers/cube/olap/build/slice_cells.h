// The aggregates of one slice while its facts are added up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "providers/cube/olap/storage/cube_writer.h"

namespace vok::olap {

/// Value columns whose aggregates are exact in every order of adding, and how each is joined.
struct AggregatedColumn {
  uint32_t value_column = 0;
  Aggregator aggregator = Aggregator::kSum;
};
/// Aggregates of one slice: a cell for every period and inner leaf.
class SliceCells {
 public:
  static constexpr std::size_t kMostRows = 1024;
  /// What a cell takes, at most.
  static constexpr std::size_t CellBytes(std::size_t columns) {
    return 1 + columns * (sizeof(int64_t) + 1);
  }

  SliceCells(const std::vector<AggregatedColumn>& columns, const NewFacts& facts,
             std::size_t count);

  void Clear();

  bool IsPresent(std::size_t cell) const { return present_[cell] != 0; }

  /// Adds the facts from `first` on, each to its cell; at most `kMostRows`.
  void AddRows(const NewFacts& facts, const std::vector<AggregatedColumn>& columns, uint64_t first,
               std::span<const std::size_t> cells);

  /// Adds a cell of shorter periods.
  void AddCell(std::size_t cell, const SliceCells& other, std::size_t from);
  /// Adds the same cells of other facts.
  void AddCells(const SliceCells& other);

  /// The cells from `first` on as a block; empty when none is present.
  std::string Block(std::size_t first, uint32_t count);
  std::size_t LastBlockCells() const { return leaves_.size(); }

 private:
  struct Column {
    Aggregator aggregator;
    std::vector<int64_t> values;
    std::vector<uint8_t> validity;  // empty for a column without NULLs
    std::vector<int64_t> part{};    // of the block being made
    std::vector<uint8_t> valid_part{};
  };

  static void AddSums(Column& column, std::span<const std::size_t> cells, const int64_t* values,
                      const int64_t* validity);
  /// `is_new`: no fact was added to the cell before.
  void Add(std::size_t column, std::size_t cell, int64_t value, bool is_new);

  std::vector<uint8_t> present_;
  std::vector<Column> columns_;
  std::vector<uint8_t> new_cells_;
  std::vector<uint32_t> leaves_;
};

}  // namespace vok::olap
