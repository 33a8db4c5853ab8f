#include "cli/json_entries.h"

#include <algorithm>
#include <set>
#include <vector>

#include "platform/text.h"

namespace vok::cli {
namespace {

constexpr std::size_t kMaxTextUnits = 255;  // of every text column of the settings database

std::string Join(const std::string& path, std::string_view name) {
  return path.empty() ? std::string(name) : path + "." + std::string(name);
}

}  // namespace

void Node::Fail(int32_t number, const std::string& what) const {
  throw Failure(number, origin + ": " + (path.empty() ? "the document" : path) + " " + what);
}

Json ParseJson(std::string_view text, const std::string& origin, const std::string& kind) {
  std::vector<std::set<std::string>> open_objects;
  const auto watch = [&](int, Json::parse_event_t event, Json& parsed) {
    if (event == Json::parse_event_t::object_start) open_objects.emplace_back();
    if (event == Json::parse_event_t::object_end) open_objects.pop_back();
    if (event == Json::parse_event_t::key &&
        !open_objects.back().insert(parsed.get<std::string>()).second) {
      throw Failure(failure_number::kTypeMismatch, origin + ": the entry " +
                                                       Quoted(parsed.get<std::string>()) +
                                                       " is there twice in one object");
    }
    return true;
  };
  try {
    return Json::parse(text, watch);
  } catch (const Json::exception& error) {
    const std::string what = error.what();  // after the library's name for it, in brackets
    throw Failure(failure_number::kInvalidCall,
                  origin + " is not " + kind + ": " + what.substr(what.find("] ") + 2));
  }
}

void ExpectObject(const Node& node, std::initializer_list<std::string_view> names) {
  if (!node.json.is_object()) node.Fail(failure_number::kTypeMismatch, "must be an object {…}");
  for (const auto& item : node.json.items()) {
    if (std::find(names.begin(), names.end(), item.key()) == names.end()) {
      std::string known;
      for (const auto name : names) known += (known.empty() ? "" : ", ") + std::string(name);
      node.Fail(failure_number::kTypeMismatch,
                "has an unknown entry " + Quoted(item.key()) + "; known are " + known);
    }
  }
}

std::optional<Node> Entry(const Node& node, std::string_view name) {
  const auto found = node.json.find(std::string(name));
  if (found == node.json.end() || found->is_null()) return std::nullopt;
  return Node{*found, node.origin, Join(node.path, name)};
}

std::string Text(const Node& node) {
  if (!node.json.is_string()) node.Fail(failure_number::kTypeMismatch, "must be a text");
  auto text = node.json.get<std::string>();
  if (Utf16Length(text) > kMaxTextUnits) {
    node.Fail(failure_number::kTypeMismatch, "is longer than 255 characters; shorten it");
  }
  if (text.find('\0') != std::string::npos) {
    node.Fail(failure_number::kTypeMismatch, "holds a NUL character; remove it");
  }
  return text;
}

std::string TextEntry(const Node& node, std::string_view name, const std::string& otherwise) {
  const auto entry = Entry(node, name);
  return entry ? Text(*entry) : otherwise;
}

bool FlagEntry(const Node& node, std::string_view name, bool otherwise) {
  const auto entry = Entry(node, name);
  if (!entry) return otherwise;
  if (!entry->json.is_boolean()) {
    entry->Fail(failure_number::kTypeMismatch, "must be true or false");
  }
  return entry->json.get<bool>();
}

}  // namespace vok::cli
