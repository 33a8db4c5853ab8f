// JSON documents as the command line writes them.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace vok::cli {

/// Entries stay in the order in which they were put in.
using Json = nlohmann::ordered_json;

/// Indented by two blanks, with a line end. Bytes that are no UTF-8, as names of files may have
/// them, become U+FFFD: JSON has no other way to write them.
std::string JsonText(const Json& document);

}  // namespace vok::cli
