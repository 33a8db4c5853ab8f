// JSON documents as the command line writes them.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace vok::cli {

/// Entries stay in the order in which they were put in.
using Json = nlohmann::ordered_json;

/// Indented by two blanks, with a line end. Bytes that are not UTF-8, as names of files may have
/// them, become U+FFFD: JSON has no other way to write them. All that a terminal might obey is
/// escaped.
std::string JsonText(const Json& document);

/// A text of a document as a terminal shows it, on one line.
std::string ShownText(const Json& text);

}  // namespace vok::cli
