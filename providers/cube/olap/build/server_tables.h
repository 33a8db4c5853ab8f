// The tables of a database server as those that a cube is built from.
#pragma once

#include <memory>
#include <vector>

#include "platform/table_server.h"
#include "providers/cube/olap/build/table_source.h"

namespace vok::olap {

/// Rows of the tables `once` are asked for once each, however often they are there.
std::unique_ptr<TableSource> OpenServerTables(std::shared_ptr<TableServer> server,
                                              std::vector<TableName> once = {});

}  // namespace vok::olap
