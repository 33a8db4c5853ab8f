// The facts of one part of the fact table, sorted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "providers/cube/olap/build/fact_sorter.h"
#include "providers/cube/olap/build/hierarchy_loader.h"
#include "providers/cube/olap/build/schema.h"
#include "providers/cube/olap/build/table_source.h"
#include "providers/cube/olap/build/value_reader.h"
#include "providers/cube/olap/storage/cuboids.h"
#include "providers/cube/olap/storage/wide_integer.h"

namespace vok::olap {

/// What is read of the fact table, and what becomes of it.
struct FactPlan {
  struct KeyPart {
    uint32_t hierarchy = 0;
    uint32_t shift = 0;
    uint32_t bits = 0;
    std::size_t first_column = 0;  ///< of those of the hierarchy, among `columns`
  };
  struct Value {
    std::string column;  ///< "" for a count of all facts
    Aggregator aggregator;
    std::size_t place = 0;  ///< among `columns`
  };

  std::vector<AskedColumn> columns;
  std::optional<std::size_t> count_place;  ///< of the number of facts in a row, where it has many
  std::vector<KeyPart> keys;               ///< the first to sort by first, in the highest bits
  uint32_t key_bits = 0;
  std::vector<Value> values;
  std::vector<uint32_t> value_of_measure;
  uint32_t totals_of = kNoTime;  ///< the hierarchy whose leaves' totals are wanted
};

/// `gathered`: the server puts facts with equal keys together.
FactPlan PlanFacts(const CubeSchema& cube, const std::vector<LoadedHierarchy>& hierarchies,
                   bool gathered);

template <typename Key>
struct FactRun {
  std::vector<Key> keys;
  std::vector<ValueReader> values;    ///< in the order of the plan's
  std::vector<std::string> bad_rows;  ///< what is wrong with each that was left out
  uint64_t facts = 0;                 ///< rows of the fact table that were read
  /// By the leaves of the hierarchy that the plan wants totals of.
  std::vector<uint64_t> facts_of_leaf;
  std::vector<std::vector<Int128>> sums_of_leaf;  ///< of each value, at its column's scale
};

/// All rows of a part, those with equal keys in the order of the part; no more after
/// `most_bad_rows` bad ones. Several threads may read a part each.
template <typename Key>
FactRun<Key> ReadRun(const FactPlan& plan, const std::vector<LoadedHierarchy>& hierarchies,
                     TableReader& part, std::size_t most_bad_rows);

}  // namespace vok::olap
