#include "providers/cube/olap/build/hierarchy_loader.h"

#include <algorithm>
#include <memory>

#include "providers/cube/olap/build/member_tree.h"

namespace vok::olap {
namespace {

void LoadRows(const TableSource& source, const HierarchySchema& schema, MemberTree& tree,
              KeyMap& keys, std::vector<uint32_t>& node_of_row) {
  auto columns = tree.Columns();
  columns.push_back(schema.primary_key);
  const auto reader = source.Open(schema.table, columns);
  std::vector<uint64_t> lines;
  while (reader->Next()) {
    const auto fields = reader->Fields();
    const Field& key = fields.back();
    if (key.is_null) {
      throw BadInput(reader->Place(),
                     "the primary key, column " + Quoted(schema.primary_key) + ", is empty");
    }
    const auto row = static_cast<uint32_t>(node_of_row.size());
    if (const auto other = keys.Insert(key.text, row)) {
      throw BadInput(reader->Place(), "duplicate key " + Quoted(key.text) + " in column " +
                                          Quoted(schema.primary_key) + "; line " +
                                          std::to_string(lines[*other]) + " has it already");
    }
    lines.push_back(reader->Line());
    node_of_row.push_back(tree.Add(fields.first(fields.size() - 1), *reader));
  }
}

/// Bad rows are told when the facts are read.
bool NextGoodRow(TableReader& reader) {
  for (;;) {
    try {
      return reader.Next();
    } catch (const BadRow&) {
      continue;
    }
  }
}

/// The members are those that the facts name.
void LoadRowsOfFacts(const TableSource& source, const TableName& fact_table, MemberTree& tree,
                     const std::vector<std::string>& key_columns, KeyMap& keys,
                     std::vector<uint32_t>& node_of_row) {
  auto columns = tree.Columns();
  const std::size_t own = columns.size();
  columns.insert(columns.end(), key_columns.begin(), key_columns.end());
  const auto reader = source.Open(fact_table, columns);
  std::string key;
  while (NextGoodRow(*reader)) {
    const auto fields = reader->Fields();
    JoinKeys(fields.subspan(own), key);
    if (keys.Insert(key, static_cast<uint32_t>(node_of_row.size()))) continue;
    node_of_row.push_back(tree.Add(fields.first(own), *reader));
  }
}

}  // namespace

void JoinKeys(std::span<const Field> fields, std::string& key) {
  key.clear();
  for (const Field& field : fields) {
    key += field.is_null ? "-" : std::to_string(field.text.size());
    key += ':';
    key += field.text;
  }
}

LoadedHierarchy LoadHierarchy(const TableSource& source, const CubeSchema& cube,
                              const DimensionSchema& dimension, const HierarchySchema& hierarchy) {
  LoadedHierarchy loaded;
  loaded.is_time = dimension.is_time;
  loaded.has_table = !hierarchy.table.name.empty();
  MemberTree tree(hierarchy);
  std::vector<uint32_t> node_of_row;
  if (loaded.has_table) {
    loaded.fact_columns = {dimension.foreign_key};
    LoadRows(source, hierarchy, tree, loaded.leaves, node_of_row);
  } else {
    for (const LevelSchema& level : hierarchy.levels) loaded.fact_columns.push_back(level.column);
    LoadRowsOfFacts(source, cube.fact_table, tree, loaded.fact_columns, loaded.leaves, node_of_row);
  }
  std::vector<uint32_t> leaf_of_node;
  const TableName& table = loaded.has_table ? hierarchy.table : cube.fact_table;
  loaded.members = tree.Finish(dimension.name, "table " + Quoted(ShownName(table)), leaf_of_node);
  for (uint32_t& node : node_of_row) node = leaf_of_node[node];
  loaded.leaves.Finish(node_of_row);
  return loaded;
}

std::vector<uint32_t> SortOrder(const std::vector<LoadedHierarchy>& hierarchies) {
  std::vector<uint32_t> others;
  std::vector<uint32_t> times;
  for (uint32_t index = 0; index < hierarchies.size(); ++index) {
    (hierarchies[index].is_time ? times : others).push_back(index);
  }
  const auto fewer = [&](uint32_t a, uint32_t b) {
    return hierarchies[a].members.LeafCount() < hierarchies[b].members.LeafCount();
  };
  std::stable_sort(others.begin(), others.end(), fewer);
  std::stable_sort(times.begin(), times.end(), fewer);
  others.insert(others.empty() ? others.end() : others.end() - 1, times.begin(), times.end());
  return others;
}

}  // namespace vok::olap
