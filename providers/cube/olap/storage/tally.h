// Aggregates of one measure, one per group, while rows come in.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "providers/cube/olap/storage/fact_store.h"
#include "providers/cube/olap/storage/format.h"
#include "providers/cube/olap/storage/model.h"

namespace vok::olap {

class Tally {
 public:
  virtual ~Tally() = default;
  /// Row i belongs to `groups[i]`, below the number of groups. `validity` may be empty: all are
  /// values.
  virtual void Add(std::span<const uint32_t> groups, std::span<const int64_t> values,
                   std::span<const int64_t> validity) = 0;
  /// The first `count` groups; asked for once.
  virtual FactColumn Result(std::size_t count) = 0;

  static std::unique_ptr<Tally> Make(Aggregator aggregator, const ValueFormat& format,
                                     std::size_t groups);
};

}  // namespace vok::olap
