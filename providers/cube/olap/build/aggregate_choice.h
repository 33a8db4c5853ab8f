// Which aggregates a cube stores.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "providers/cube/olap/storage/cube_writer.h"

namespace vok::olap {

struct ChosenSet {
  std::vector<HierarchyLevel> outer;  ///< without the time hierarchy
  std::vector<uint32_t> time_levels;  ///< long periods first; {0} without a time hierarchy
};

struct AggregateChoice {
  uint32_t inner = 0;
  uint32_t time = kNoTime;
  std::vector<ChosenSet> sets;
};

/// Of hierarchies in the order of sorting, the last is the inner one. `value_bits` is what the
/// values of a fact take. A cuboid is stored when it is expected to have at most two thirds of the
/// cells of everything that could answer in its place, the facts included, as long as all of them
/// stay within four bytes a fact; those of short periods are looked at first, among them the
/// largest first, and each is followed by those of longer periods.
AggregateChoice ChooseAggregates(const std::vector<NewHierarchy>& hierarchies,
                                 const std::vector<uint32_t>& sort_order,
                                 std::optional<uint32_t> time, uint64_t rows, double value_bits);

}  // namespace vok::olap
