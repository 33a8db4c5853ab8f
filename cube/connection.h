// Connecting to a cube.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/cube.h"
#include "platform/host.h"

namespace vok {

/// Connection text of a query run. Keywords in capitals, the cube's name in brackets.
std::string RunConnectionText(const std::string& cube_file, const std::string& cube_name);

/// Connection text to list the catalogs of a cube file.
std::string CatalogsConnectionText(const std::string& cube_file);

/// Connection text to read the structure of one catalog of a cube file.
std::string CatalogConnectionText(const std::string& cube_file, const std::string& catalog);

/// Connects with a connection text and stores the connection in the caller's `slot`. 0, or the
/// number of the failure after it was reported; the slot is then empty. `stop` as
/// `CubeProvider::Connect` takes it.
int32_t OpenConnection(const Host& host, std::unique_ptr<CubeConnection>& slot,
                       const std::string& text, const QueryStop* stop);

}  // namespace vok
