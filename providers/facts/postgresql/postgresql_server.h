// Tables of a PostgreSQL server, or of one that speaks its protocol.
#pragma once

#include <memory>
#include <string>

#include "platform/table_server.h"

namespace vok::postgresql {

/// Reads all tables in one transaction, which sees one state of the database and changes nothing.
/// Failures of each call: those of `Connection`; of this one also those of `ReadAddress`.
std::unique_ptr<TableServer> OpenServer(const std::string& address, const ServerSettings& settings,
                                        const QueryStop& stop);

}  // namespace vok::postgresql
