// Reading a cube's facts from their table.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "providers/cube/olap/build/hierarchy_loader.h"
#include "providers/cube/olap/build/schema.h"
#include "providers/cube/olap/build/table_source.h"
#include "providers/cube/olap/storage/cube_writer.h"

namespace vok::olap {

using Progress = std::function<void(const std::string& what, double done)>;

struct LoadedFacts {
  uint64_t fact_count = 0;
  NewFacts facts;
};

/// Parts of the table are read and sorted on `threads` threads, then put together by ranges of
/// their keys. `progress` is told on the caller's.
LoadedFacts LoadFacts(const TableSource& source, const CubeSchema& cube,
                      const std::vector<LoadedHierarchy>& hierarchies, unsigned threads,
                      const Progress& progress);

}  // namespace vok::olap
