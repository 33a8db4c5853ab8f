// Building live cubes: members in the file, facts in the database.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/table_server.h"
#include "providers/cube/olap/build/hierarchy_loader.h"
#include "providers/cube/olap/build/schema.h"
#include "providers/cube/olap/build/table_source.h"
#include "providers/cube/olap/storage/live_source.h"

namespace vok::olap {

/// The server's tables; of the cubes' fact tables each row that differs, once: members that facts
/// name are not looked for in all of them by us. Both outlive the result.
std::unique_ptr<TableSource> OpenLiveTables(std::shared_ptr<TableServer> server,
                                            const std::vector<CubeSchema>& cubes);

struct LiveCube {
  LiveSource source;
  uint64_t fact_count = 0;  ///< at the moment
};

/// Looks through all facts for what would make sums wrong. Failures: a measure that cannot be added
/// up there; a key that has no member; those of the server.
LiveCube PrepareLive(TableServer& server, const CubeSchema& cube,
                     const std::vector<LoadedHierarchy>& hierarchies);

}  // namespace vok::olap
