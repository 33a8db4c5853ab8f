// The tables of a database server as those that a cube is built from.
#pragma once

#include <memory>

#include "platform/table_server.h"
#include "providers/cube/olap/build/table_source.h"

namespace vok::olap {

std::unique_ptr<TableSource> OpenServerTables(std::unique_ptr<TableServer> server);

}  // namespace vok::olap
