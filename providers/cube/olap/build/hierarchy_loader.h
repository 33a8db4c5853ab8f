// Reading a cube's dimensions from their tables.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "providers/cube/olap/build/cube_record.h"
#include "providers/cube/olap/build/schema.h"
#include "providers/cube/olap/build/table_source.h"
#include "providers/cube/olap/storage/cube_writer.h"
#include "providers/cube/olap/storage/key_map.h"

namespace vok::olap {

/// One hierarchy and how a fact finds its leaf in it.
struct LoadedHierarchy {
  NewHierarchy members;
  bool is_time = false;
  /// The fact table's columns whose values are the key of `leaves`: the foreign key, or the levels'
  /// own columns when the hierarchy has no table.
  std::vector<std::string> fact_columns;
  bool has_table = false;
  KeyMap leaves;
  RecordedRows rows;  ///< where they were asked for
};

struct HierarchyOptions {
  bool record = false;  ///< keep the rows
  /// Of a hierarchy without a table: rows that count as if facts had them, and which of their
  /// leaves do.
  const RecordedRows* before = nullptr;
  std::vector<bool> used = {};
};

LoadedHierarchy LoadHierarchy(const TableSource& source, const CubeSchema& cube,
                              const DimensionSchema& dimension, const HierarchySchema& hierarchy,
                              const HierarchyOptions& options);

/// Hierarchies in the order in which facts are to be sorted: those with few leaves first, so that
/// their slices are long runs; time after them, just before the largest, so that the periods of a
/// query are runs within each.
std::vector<uint32_t> SortOrder(const std::vector<LoadedHierarchy>& hierarchies);

}  // namespace vok::olap
