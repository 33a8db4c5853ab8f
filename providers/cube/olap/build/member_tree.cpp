#include "providers/cube/olap/build/member_tree.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <set>
#include <tuple>
#include <utility>

#include "providers/cube/olap/build/table_source.h"

namespace vok::olap {
namespace {

constexpr const char* kNullName = "#null";

template <typename Number>
std::optional<Number> AsNumber(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::string Shortest(double number) {
  char buffer[32];
  return {buffer, std::to_chars(buffer, buffer + sizeof(buffer), number).ptr};
}

}  // namespace

std::vector<std::string> MemberTree::Columns() const {
  std::vector<std::string> columns;
  for (const LevelSchema& level : schema_.levels) {
    columns.push_back(level.column);
    for (const auto* column : {&level.name_column, &level.caption_column, &level.ordinal_column}) {
      if (!column->empty()) columns.push_back(*column);
    }
  }
  return columns;
}

uint32_t MemberTree::Add(std::span<const Field> fields, const TableReader& reader) {
  uint32_t node = kNoMember;
  for (std::size_t level = 0; level < levels_.size(); ++level) {
    Node next = ReadNode(schema_.levels[level], fields, reader);
    next.parent = node;
    node = FindOrAdd(level, std::move(next), reader);
  }
  return node;
}

MemberTree::Node MemberTree::ReadNode(const LevelSchema& level, std::span<const Field>& fields,
                                      const TableReader& reader) const {
  const auto take = [&fields] {
    const Field field = fields.front();
    fields = fields.subspan(1);
    return field;
  };
  Node node;
  ReadKey(level, take(), reader, node);
  node.name = node.is_null ? kNullName : node.key;
  if (!level.name_column.empty()) {
    const Field name = take();
    node.name = name.is_null ? kNullName : std::string(name.text);
  }
  node.caption = node.name;
  if (!level.caption_column.empty()) {
    const Field caption = take();
    if (!caption.is_null) node.caption = caption.text;
  }
  if (!level.ordinal_column.empty()) {
    const Field ordinal = take();
    node.has_ordinal = !ordinal.is_null;
    node.ordinal = ordinal.text;
  }
  return node;
}

void MemberTree::ReadKey(const LevelSchema& level, const Field& field, const TableReader& reader,
                         Node& node) const {
  node.is_null = field.is_null;
  if (field.is_null) return;
  node.key = field.text;
  if (level.key_type == KeyType::kText) return;
  const auto refuse = [&](const char* kind) {
    throw BadInput(reader.Place(), Quoted(field.text) + " in column " + Quoted(level.column) +
                                       " is no " + kind + ", as level " + Quoted(level.name) +
                                       " wants it");
  };
  if (level.key_type == KeyType::kInteger) {
    const auto integer = AsNumber<int64_t>(field.text);
    if (!integer) refuse("integer");
    node.number = static_cast<double>(*integer);
    node.key = std::to_string(*integer);
    return;
  }
  const auto number = AsNumber<double>(field.text);
  if (!number || !std::isfinite(*number)) refuse("number");
  node.number = *number;
  node.key = Shortest(*number);
}

uint32_t MemberTree::FindOrAdd(std::size_t level, Node node, const TableReader& reader) {
  LevelNodes& there = levels_[level];
  const std::string key = (node.is_null ? "0" : "1") + node.key;
  const std::string path = std::to_string(node.parent) + "/" + key;
  const auto number = static_cast<uint32_t>(nodes_.size());
  const auto [found, is_new] = there.by_path.emplace(path, number);
  if (!is_new) return found->second;
  if (schema_.levels[level].unique_members) {
    const auto [other, is_only] = there.by_key.emplace(key, number);
    if (!is_only) {
      throw BadInput(reader.Place(), "duplicate member: " + Quoted(node.name) + " of level " +
                                         Quoted(schema_.levels[level].name) + " stands under " +
                                         Quoted(nodes_[node.parent].name) + " here and under " +
                                         Quoted(nodes_[nodes_[other->second].parent].name) +
                                         " before, but the level has uniqueMembers=\"true\"");
    }
  }
  nodes_.push_back(std::move(node));
  there.nodes.push_back(number);
  return number;
}

std::vector<uint32_t> MemberTree::Ordered(std::size_t level,
                                          const std::vector<uint32_t>& places) const {
  struct Position {
    uint32_t parent;
    bool no_ordinal;
    double ordinal_number;
    std::string_view ordinal;
    bool is_null;
    double number;
    std::string_view key;
    uint32_t node;
    auto Rank() const {
      return std::tie(parent, no_ordinal, ordinal_number, ordinal, is_null, number, key);
    }
  };
  const auto& there = levels_[level].nodes;
  const bool ordinals_are_numbers = std::all_of(there.begin(), there.end(), [&](uint32_t each) {
    return !nodes_[each].has_ordinal || AsNumber<double>(nodes_[each].ordinal);
  });
  std::vector<Position> order;
  for (const uint32_t index : there) {
    const Node& node = nodes_[index];
    const uint32_t parent = node.parent == kNoMember ? 0 : places[node.parent];
    const bool has_number = node.has_ordinal && ordinals_are_numbers;
    order.push_back({parent, !node.has_ordinal, has_number ? *AsNumber<double>(node.ordinal) : 0,
                     has_number ? std::string_view() : std::string_view(node.ordinal), node.is_null,
                     node.number, node.key, index});
  }
  std::sort(order.begin(), order.end(),
            [](const Position& a, const Position& b) { return a.Rank() < b.Rank(); });
  std::vector<uint32_t> nodes;
  nodes.reserve(order.size());
  for (const Position& position : order) nodes.push_back(position.node);
  return nodes;
}

void MemberTree::CheckNames(const std::string& where) const {
  std::set<std::pair<uint32_t, std::string_view>> names;
  for (const Node& node : nodes_) {
    if (names.emplace(node.parent, node.name).second) continue;
    throw BadInput(where,
                   "duplicate members: two different keys of hierarchy " + Quoted(schema_.name) +
                       " have the name " + Quoted(node.name) +
                       (node.parent == kNoMember ? std::string()
                                                 : " under " + Quoted(nodes_[node.parent].name)) +
                       ". Give them different names, or one key.");
  }
}

NewHierarchy MemberTree::Finish(const std::string& dimension_name, const std::string& where,
                                std::vector<uint32_t>& leaf_of_node) const {
  if (nodes_.empty()) {
    throw BadInput(where,
                   "has no rows, so hierarchy " + Quoted(schema_.name) + " would have no members");
  }
  CheckNames(where);
  NewHierarchy hierarchy{dimension_name, schema_.name, schema_.has_all, {}, {}};
  if (schema_.has_all) {
    hierarchy.levels.push_back({schema_.all_level_name, LevelKind::kAll, {0, 1}});
    hierarchy.members.push_back({kNoMember, schema_.all_member_name, schema_.all_member_caption});
  }
  std::vector<uint32_t> members(nodes_.size());
  for (std::size_t level = 0; level < levels_.size(); ++level) {
    const auto begin = static_cast<uint32_t>(hierarchy.members.size());
    for (const uint32_t index : Ordered(level, members)) {
      const Node& node = nodes_[index];
      const uint32_t top = schema_.has_all ? 0 : kNoMember;
      members[index] = static_cast<uint32_t>(hierarchy.members.size());
      hierarchy.members.push_back(
          {node.parent == kNoMember ? top : members[node.parent], node.name, node.caption});
    }
    const auto end = static_cast<uint32_t>(hierarchy.members.size());
    hierarchy.levels.push_back(
        {schema_.levels[level].name, schema_.levels[level].kind, {begin, end}});
  }
  leaf_of_node.assign(nodes_.size(), 0);
  for (const uint32_t node : levels_.back().nodes) {
    leaf_of_node[node] = members[node] - hierarchy.levels.back().members.begin;
  }
  return hierarchy;
}

}  // namespace vok::olap
