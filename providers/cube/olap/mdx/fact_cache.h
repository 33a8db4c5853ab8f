// What a query has read from the facts. Reads of one slice are announced first and made together
// when the first of them is needed, so that all measures of the slice cost one scan. A column that
// fills a block is handed out as it came from the store, to the last who announced it without a
// copy.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "providers/cube/olap/mdx/expression.h"
#include "providers/cube/olap/mdx/query_limits.h"

namespace vok::olap {

class FactCache {
 public:
  /// `guard` is asked while facts are read.
  FactCache(const CubeView& cube, const QueryGuard& guard) : cube_(cube), guard_(guard) {}

  /// Remembers what `Read` will ask for.
  void Announce(const Block& block);
  /// The stored values of a block whose members are all stored.
  Column Read(const Block& block);
  /// Forgets everything when it has grown large. Columns handed out stay.
  void Trim();

 private:
  struct Kept {
    FactColumn column;
    uint32_t announced = 0;  ///< reads that are still to come
    bool is_read = false;
  };
  struct Slice {
    FactQuery query;
    std::map<uint32_t, Kept> columns;  ///< by measure
  };
  using Key = std::vector<uint32_t>;

  /// nullptr: no leaf takes part.
  Slice* Find(const Block& block, const Positions::Part* part);
  /// The column, read if it was not.
  FactColumn& Get(Slice& slice, uint32_t measure);
  /// Makes the reads of the slice that were not made, with those that were announced where the
  /// facts answer them together.
  void Store(Slice& slice);
  /// Forgets the column with the last of the announced reads.
  void Release(Slice& slice, uint32_t measure);
  /// The column as a block's own; it is released.
  Column Whole(Slice& slice, uint32_t measure);

  const CubeView& cube_;
  const QueryGuard& guard_;
  std::map<Key, Slice> slices_;
  std::size_t kept_values_ = 0;
};

}  // namespace vok::olap
