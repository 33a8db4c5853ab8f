// The block that holds the aggregates of one combination of members: which leaves of the inner
// hierarchy have facts, and the values of each.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "providers/cube/olap/storage/blocks.h"
#include "providers/cube/olap/storage/format.h"
#include "providers/cube/olap/storage/model.h"

namespace vok::olap {

/// One column of the cells to be stored, one entry a cell.
struct NewCellColumn {
  std::span<const int64_t> values;
  std::span<const uint8_t> validity;  ///< 1 or 0; empty for a column without NULLs
};

/// `leaves` ascend below `inner_count`; at least one.
std::string AggregateBlockBytes(uint32_t inner_count, std::span<const uint32_t> leaves,
                                std::span<const NewCellColumn> columns);

/// A block read in place. Failure "damaged" unless all that it says lies within it.
class AggregateBlock {
 public:
  AggregateBlock(std::span<const std::byte> block, uint32_t inner_count,
                 std::span<const ValueFormat> formats, const std::string& file_name);

  /// Cells that lie one after the other, from `first` on.
  struct Run {
    uint32_t first = 0;
    uint32_t count = 0;
  };
  /// Where a search has come to; ranges are searched in ascending order.
  struct Cursor {
    std::size_t word = 0;
    uint32_t cells_before = 0;
  };
  /// The cells within a range of leaves; writes the leaf of each into `leaves`, which has room for
  /// all leaves of the range.
  Run Find(IdRange range, Cursor& cursor, uint32_t* leaves) const;
  void Values(std::size_t column, Run run, int64_t* values) const;
  /// 1 or 0; only of a column whose format has NULLs.
  void Validity(std::size_t column, Run run, int64_t* valid) const;

 private:
  struct Column {
    int64_t low = 0;
    uint32_t width = 0;
    const std::byte* values = nullptr;
    const std::byte* validity = nullptr;
  };

  uint64_t Word(std::size_t index) const;

  const std::byte* bitmap_;
  std::vector<Column> columns_;
};

}  // namespace vok::olap
