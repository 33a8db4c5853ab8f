// Reading a JSON document entry by entry, with the place of what is wrong in every failure.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "cli/print.h"
#include "platform/failure.h"

namespace vok::cli {

/// A value and the path that leads to it, such as "dataSources[0].MoneySets[3].Measure".
struct Node {
  const Json& json;
  std::string origin;
  std::string path;

  [[noreturn]] void Fail(int32_t number, const std::string& what) const;
};

/// The text as JSON; `kind` is what it should be, such as "a settings document". Failures: 5 for a
/// text that is not JSON, 13 for an object that names an entry twice, since one would be lost.
Json ParseJson(std::string_view text, const std::string& origin, const std::string& kind);

/// Failure 13 for what is not an object, and for an entry of another name.
void ExpectObject(const Node& node, std::initializer_list<std::string_view> names);

/// The entry of that name, or nothing when it is absent or null.
std::optional<Node> Entry(const Node& node, std::string_view name);

/// Failure 13 for what is not a text, has more than 255 characters or a NUL.
std::string Text(const Node& node);
std::string TextEntry(const Node& node, std::string_view name, const std::string& otherwise = {});
/// Failure 13 for what is neither true nor false.
bool FlagEntry(const Node& node, std::string_view name, bool otherwise = false);

/// Calls `read` with each element and its place. Failure 13 for what is not an array.
template <typename Read>
void Elements(const Node& node, Read read) {
  if (!node.json.is_array()) node.Fail(failure_number::kTypeMismatch, "must be an array […]");
  for (std::size_t i = 0; i < node.json.size(); ++i) {
    read(Node{node.json[i], node.origin, node.path + "[" + std::to_string(i) + "]"}, i);
  }
}

/// Those of the array entry `name`, none when it is absent. Failure 9 for more than `limit`.
template <typename Read>
void ArrayEntry(const Node& node, std::string_view name, std::size_t limit, Read read) {
  const auto entry = Entry(node, name);
  if (!entry) return;
  if (entry->json.is_array() && entry->json.size() > limit) {
    entry->Fail(failure_number::kSubscript, "has " + std::to_string(entry->json.size()) +
                                                " entries; at most " + std::to_string(limit) +
                                                " are possible");
  }
  Elements(*entry, read);
}

}  // namespace vok::cli
