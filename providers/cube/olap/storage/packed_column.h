// A column of integers in chunks, each chunk packed to the bits that its values need.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>

#include "providers/cube/olap/storage/blocks.h"
#include "providers/cube/olap/storage/format.h"

namespace vok::olap {

/// Bits per value of a chunk whose values lie between `low` and `high`: 0 to 56, or 64.
uint32_t PackedWidth(int64_t low, int64_t high);
std::string Pack(std::span<const int64_t> values, int64_t low, uint32_t width);

/// Numbers of `width` bits each, without gaps, to be added to `low`. Eight bytes can be read from
/// any byte that a number begins in.
struct PackedNumbers {
  const std::byte* bytes;
  int64_t low;
  uint32_t width;
};
/// Numbers `first` up to `first` + `count`.
void Unpack(const PackedNumbers& numbers, uint64_t first, std::size_t count, int64_t* values);
void Unpack(const PackedNumbers& numbers, uint64_t first, std::size_t count, uint32_t* values);

/// Where the values of a column are.
class PackedColumn {
 public:
  PackedColumn() = default;
  /// Failure "damaged" unless every entry fits its block and its rows.
  PackedColumn(const BlockStore& blocks, std::span<const ChunkEntry> chunks, uint64_t rows);

  const ChunkEntry& ChunkOf(uint64_t row) const { return chunks_[row / kChunkRows]; }
  std::span<const ChunkEntry> chunks() const { return chunks_; }
  const BlockStore& blocks() const { return *blocks_; }

 private:
  const BlockStore* blocks_ = nullptr;
  std::span<const ChunkEntry> chunks_;
};

/// Reads a column, which outlives it, chunk by chunk: holds the block of the chunk that was read
/// last.
class ColumnReader {
 public:
  explicit ColumnReader(const PackedColumn& column) : column_(&column) {}

  const ChunkEntry& ChunkOf(uint64_t row) const { return column_->ChunkOf(row); }
  int64_t At(uint64_t row);
  /// Rows from `row` on, all of one chunk.
  void Unpack(uint64_t row, std::size_t count, int64_t* values);
  void Unpack(uint64_t row, std::size_t count, uint32_t* values);

 private:
  /// The chunk that the row is in.
  PackedNumbers NumbersOf(uint64_t row);

  const PackedColumn* column_;
  uint32_t held_ = kNoBlock;
  HeldBlock block_;
};

}  // namespace vok::olap
