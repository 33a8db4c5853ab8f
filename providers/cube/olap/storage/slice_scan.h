// Finds the rows of a slice in facts that are sorted by their keys.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "providers/cube/olap/storage/cancel_check.h"
#include "providers/cube/olap/storage/column_memory.h"
#include "providers/cube/olap/storage/model.h"
#include "providers/cube/olap/storage/packed_column.h"

namespace vok::olap {

struct RowRange {
  uint64_t begin = 0;
  uint64_t end = 0;
};

/// The leaves of one key column that take part.
class LeafFilter {
 public:
  LeafFilter(std::vector<IdRange> ranges, uint32_t leaf_count);
  const std::vector<IdRange>& ranges() const { return ranges_; }
  /// For any number below twice the leaf count, as damaged facts may hold.
  bool Contains(uint32_t leaf) const { return taken_[leaf] != 0; }

 private:
  std::vector<IdRange> ranges_;
  std::vector<uint8_t> taken_;
};

/// Leads from one wanted row to the next along the sorted keys, so that its cost follows the rows
/// inside the slice. Failure "damaged" when a block that it needs is.
class SliceScan {
 public:
  /// Columns in the order of sorting; no filter: all leaves.
  SliceScan(std::span<const PackedColumn> columns,
            std::span<const std::optional<LeafFilter>> filters, CancelCheck& watch);

  /// Ascending ranges that do not touch.
  LongList<RowRange> Find(uint64_t rows);

 private:
  void Descend(std::size_t column, RowRange rows);
  void FollowFilter(std::size_t column, RowRange rows);
  void FollowValues(std::size_t column, RowRange rows);
  void TestRows(std::size_t column, RowRange rows);
  void TestBatch(std::size_t column, uint64_t first, std::size_t count);
  void Take(RowRange rows);

  std::vector<ColumnReader> columns_;
  std::span<const std::optional<LeafFilter>> filters_;
  CancelCheck& watch_;
  std::size_t filtered_columns_ = 0;  ///< up to and including the last filter
  LongList<RowRange> found_;
};

}  // namespace vok::olap
