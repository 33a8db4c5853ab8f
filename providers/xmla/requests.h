// What is asked of a server, as SOAP envelopes.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vok::xmla {

struct DiscoverRequest {
  std::string kind;  ///< such as MDSCHEMA_MEMBERS
  std::vector<std::pair<std::string, std::string>> restrictions;
  std::string catalog;  ///< "": the server's default
};

std::string DiscoverEnvelope(const DiscoverRequest& request);
/// The statement reaches the server byte for byte, carriage returns with it.
std::string ExecuteEnvelope(const std::string& catalog, const std::string& statement);

}  // namespace vok::xmla
