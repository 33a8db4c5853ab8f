// Sums that a database server has added up, added further as they came: exactly.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "providers/cube/olap/storage/fact_store.h"
#include "providers/cube/olap/storage/model.h"
#include "providers/cube/olap/storage/wide_integer.h"

namespace vok::olap {

/// One measure's results while parts of them come in. Decimals are whole numbers of one scale, the
/// largest that came; binary fractions are added as such.
class ExactColumn {
 public:
  ExactColumn(Aggregator aggregator, bool is_binary_fraction, std::size_t size);

  /// Takes a part of cell `at` as a server writes numbers. False for what is not one, or not one
  /// that fits: more than 38 digits.
  bool Add(std::size_t at, std::string_view text);
  /// Every number rounded once. Counts of nothing are empty, as sums of nothing are.
  FactColumn Result() const;

 private:
  bool AddDecimal(std::size_t at, std::string_view text);
  bool AddFraction(std::size_t at, std::string_view text);
  bool Rescale(int scale);

  Aggregator aggregator_;
  bool is_binary_fraction_;
  int scale_ = 0;
  std::vector<Int128> decimals_;
  std::vector<long double> fractions_;
  std::vector<CellState> states_;
};

}  // namespace vok::olap
