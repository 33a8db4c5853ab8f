// Reading the fields of one measure column.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "providers/cube/olap/build/table_source.h"
#include "providers/cube/olap/build/value_column.h"
#include "providers/cube/olap/storage/key_map.h"

namespace vok::olap {

/// Keeps decimal values as integers of one scale, the largest that came; all of them turn into
/// doubles when one does not fit. Counts are 1 or 0. For a count of different values each is a
/// number that stands for the text as it is written.
class ValueReader {
 public:
  explicit ValueReader(Aggregator aggregator, ValueColumn column = {})
      : aggregator_(aggregator), column_(std::move(column)) {}

  /// False when the text is not a number, or one that no double holds.
  bool Add(const Field& field);

  ValueColumn& column() { return column_; }
  const ValueColumn& column() const { return column_; }
  /// The texts of a count of different values.
  KeyMap TakeDifferent() { return std::move(different_); }

 private:
  bool AddNumber(std::string_view text);

  Aggregator aggregator_;
  ValueColumn column_;
  KeyMap different_;
  uint32_t different_count_ = 0;
};

}  // namespace vok::olap
