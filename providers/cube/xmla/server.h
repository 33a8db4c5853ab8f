// One cube server: asks it and reads its answers as they arrive. Shared by a connection and all
// that was asked of it; its HTTP connection is kept from one question to the next. Questions are
// SOAP envelopes.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "providers/cube/xmla/cellset_data.h"
#include "providers/cube/xmla/rowset_reader.h"
#include "providers/server/http_client.h"

namespace vok::xmla {

inline constexpr std::size_t kMaxNames = 10'000;  // of a list of the structure
inline constexpr std::size_t kMaxLevelMembers = 10'000'000;

struct DiscoverRequest {
  std::string kind;  ///< such as MDSCHEMA_MEMBERS
  std::vector<std::pair<std::string, std::string>> restrictions;
  std::string catalog;                ///< "": the server's default
  std::size_t most_rows = kMaxNames;  ///< that are taken; more are a failure
};

std::string DiscoverEnvelope(const DiscoverRequest& request);
/// The statement reaches the server byte for byte, carriage returns with it.
std::string ExecuteEnvelope(const std::string& catalog, const std::string& statement);

/// Who asks, and by which means; called for each connection.
struct ServerAccess {
  std::function<ServerSettings()> settings;
  NewHttpTransport transport;
};

/// Failures are those of `HttpClient`, and: -2147467259 for an answer that is not one, -2147217911
/// for a user that is not let in, and what the server itself reports, in its words, as -2147217900
/// for a statement and as -2147467259 for anything else.
class Server {
 public:
  /// `stop`, which outlives the server, ends the question under way and all that follow; nullptr:
  /// nothing does.
  Server(const std::string& address, const ServerSettings& settings,
         const NewHttpTransport& transport, const QueryStop* stop = nullptr)
      : http_(address, settings, transport, stop) {}

  const std::string& shown_address() const { return http_.shown_address(); }

  /// Calls `take` for each row, in the server's order; rows taken before a failure do not count.
  void Discover(const DiscoverRequest& request, std::vector<std::string> columns, RowTaker take);
  /// Fills `data`, which is empty; what it holds after a failure does not count.
  void Execute(const std::string& catalog, const std::string& statement, CellsetData& data);

 private:
  void Ask(const std::string& action, const std::string& envelope, int32_t number,
           ResultReader& result);

  server::HttpClient http_;
};

}  // namespace vok::xmla
