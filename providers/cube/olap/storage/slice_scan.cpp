#include "providers/cube/olap/storage/slice_scan.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vok::olap {
namespace {

/// Up to so many rows, testing each is cheaper than leaping from value to value, or to the ends of
/// one range of leaves.
constexpr uint64_t kFewToFollow = 512;
constexpr uint64_t kFewPerRange = 32;
constexpr std::size_t kBatch = 256;

/// The first row of `rows` whose key is not below `key`; the keys ascend within `rows`. Looks at
/// blocks only where the chunks' limits leave the question open.
uint64_t FirstNotBelow(ColumnReader& column, RowRange rows, int64_t key) {
  uint64_t step = 1;
  while (rows.begin < rows.end) {
    // Leaps of doubled length find a near place fast; the search then closes in by halves.
    const uint64_t half = (rows.end - rows.begin) / 2;
    const uint64_t probe = rows.begin + std::min(step - 1, half);
    const ChunkEntry& chunk = column.ChunkOf(probe);
    const uint64_t chunk_begin = probe - probe % kChunkRows;
    if (chunk.high < key) {
      rows.begin = std::min(chunk_begin + kChunkRows, rows.end);
    } else if (chunk.low >= key) {
      rows.end = std::max(chunk_begin, rows.begin);
    } else if (column.At(probe) < key) {
      rows.begin = probe + 1;
    } else {
      rows.end = probe;
    }
    step *= 2;
  }
  return rows.begin;
}

}  // namespace

LeafFilter::LeafFilter(std::vector<IdRange> ranges, uint32_t leaf_count)
    : ranges_(std::move(ranges)), taken_(2 * std::size_t{leaf_count} + 1) {
  for (IdRange& range : ranges_) {
    range.end = std::min(range.end, leaf_count);
    for (uint32_t leaf = range.begin; leaf < range.end; ++leaf) taken_[leaf] = 1;
  }
}

SliceScan::SliceScan(std::span<const PackedColumn> columns,
                     std::span<const std::optional<LeafFilter>> filters, CancelCheck& watch)
    : columns_(columns.begin(), columns.end()), filters_(filters), watch_(watch) {
  for (std::size_t column = 0; column < filters.size(); ++column) {
    if (filters[column]) filtered_columns_ = column + 1;
  }
}

LongList<RowRange> SliceScan::Find(uint64_t rows) {
  found_.clear();
  Descend(0, {0, rows});
  return std::move(found_);
}

void SliceScan::Descend(std::size_t column, RowRange rows) {
  if (rows.begin >= rows.end) return;
  if (column >= filtered_columns_) return Take(rows);
  const auto& filter = filters_[column];
  const uint64_t few = filter ? kFewPerRange * filter->ranges().size() : kFewToFollow;
  if (rows.end - rows.begin <= few) return TestRows(column, rows);
  if (filter) return FollowFilter(column, rows);
  FollowValues(column, rows);
}

void SliceScan::FollowFilter(std::size_t column, RowRange rows) {
  ColumnReader& keys = columns_[column];
  for (const IdRange& leaves : filters_[column]->ranges()) {
    watch_.Count(kFewPerRange);
    rows.begin = FirstNotBelow(keys, rows, leaves.begin);
    const uint64_t end = FirstNotBelow(keys, rows, leaves.end);
    if (column + 1 < filtered_columns_) {
      FollowValues(column, {rows.begin, end});
    } else {
      Take({rows.begin, end});
    }
    rows.begin = end;
  }
}

void SliceScan::FollowValues(std::size_t column, RowRange rows) {
  while (rows.begin < rows.end) {
    watch_.Count(kFewPerRange);
    const int64_t key = columns_[column].At(rows.begin);
    const uint64_t end = FirstNotBelow(columns_[column], {rows.begin + 1, rows.end}, key + 1);
    Descend(column + 1, {rows.begin, end});
    rows.begin = end;
  }
}

void SliceScan::TestRows(std::size_t column, RowRange rows) {
  while (rows.begin < rows.end) {
    const uint64_t chunk_rest = kChunkRows - rows.begin % kChunkRows;
    const auto count = std::min({rows.end - rows.begin, chunk_rest, uint64_t{kBatch}});
    watch_.Count(count);
    TestBatch(column, rows.begin, count);
    rows.begin += count;
  }
}

void SliceScan::TestBatch(std::size_t column, uint64_t first, std::size_t count) {
  std::array<uint8_t, kBatch> taken;
  std::array<uint32_t, kBatch> keys;
  std::fill_n(taken.begin(), count, uint8_t{1});
  for (; column < filtered_columns_; ++column) {
    if (!filters_[column]) continue;
    columns_[column].Unpack(first, count, keys.data());
    for (std::size_t row = 0; row < count; ++row) {
      taken[row] &= static_cast<uint8_t>(filters_[column]->Contains(keys[row]));
    }
  }
  for (std::size_t row = 0; row < count; ++row) {
    if (taken[row]) Take({first + row, first + row + 1});
  }
}

void SliceScan::Take(RowRange rows) {
  if (rows.begin >= rows.end) return;
  if (!found_.empty() && found_.back().end == rows.begin) {
    found_.back().end = rows.end;
  } else {
    found_.push_back(rows);
  }
}

}  // namespace vok::olap
