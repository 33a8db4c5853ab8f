// What is asked of a server, as SOAP envelopes.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

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

}  // namespace vok::xmla
