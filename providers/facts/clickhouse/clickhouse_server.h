// Tables of a ClickHouse server, which is asked over HTTP.
#pragma once

#include <memory>
#include <string>

#include "platform/http.h"
#include "platform/table_server.h"

namespace vok::clickhouse {

/// `address` is "clickhouse+https://host:port/database", or clickhouse+http for a server where that
/// does not matter. The server has no state of the database that several questions could share:
/// what changes between two tables is seen. Failures: an address with a user, a password or
/// options; those of the requests, with the server's own words.
std::unique_ptr<TableServer> OpenServer(const std::string& address, const ServerSettings& settings,
                                        const NewHttpTransport& transport, const QueryStop& stop);

}  // namespace vok::clickhouse
