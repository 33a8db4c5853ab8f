#include "providers/cube/olap/build/hierarchy_loader.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "providers/cube/olap/build/member_tree.h"

namespace vok::olap {
namespace {

void Record(std::span<const Field> fields, RecordedRows& rows) {
  rows.width = fields.size();
  for (const Field& field : fields) {
    rows.fields.push_back(field.is_null ? std::nullopt : std::optional<std::string>(field.text));
  }
}

/// Recorded rows whose leaves are used.
class RecordedReader : public TableReader {
 public:
  RecordedReader(const RecordedRows& rows, const std::vector<bool>& used)
      : rows_(rows), used_(used) {}

  bool Next() override {
    while (next_ < rows_.leaves.size() && !used_[rows_.leaves[next_]]) ++next_;
    if (next_ == rows_.leaves.size()) return false;
    const auto* field = rows_.fields.data() + next_++ * rows_.width;
    fields_.clear();
    for (std::size_t count = rows_.width; count > 0; --count, ++field) {
      fields_.push_back({field->has_value() ? std::string_view(**field) : "", !field->has_value()});
    }
    return true;
  }
  std::span<const Field> Fields() const override { return fields_; }
  std::string PlaceOf(uint64_t row) const override {
    return "the facts that stay, member " + std::to_string(row);
  }
  uint64_t Line() const override { return next_; }

 private:
  const RecordedRows& rows_;
  const std::vector<bool>& used_;
  std::size_t next_ = 0;
  std::vector<Field> fields_;
};

void LoadRows(const TableSource& source, const HierarchySchema& schema, MemberTree& tree,
              bool record, LoadedHierarchy& loaded, std::vector<uint32_t>& node_of_row) {
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
    if (const auto other = loaded.leaves.Insert(key.text, row)) {
      throw BadInput(reader->Place(), "duplicate key " + Quoted(key.text) + " in column " +
                                          Quoted(schema.primary_key) + "; line " +
                                          std::to_string(lines[*other]) + " has it already");
    }
    lines.push_back(reader->Line());
    if (record) Record(fields.last(1), loaded.rows);
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
class RowsOfFacts {
 public:
  RowsOfFacts(MemberTree& tree, bool record, LoadedHierarchy& loaded,
              std::vector<uint32_t>& node_of_row)
      : tree_(tree), record_(record), loaded_(loaded), node_of_row_(node_of_row) {}

  std::vector<std::string> Columns() const {
    auto columns = tree_.Columns();
    columns.insert(columns.end(), loaded_.fact_columns.begin(), loaded_.fact_columns.end());
    return columns;
  }

  void Load(TableReader& reader) {
    const std::size_t own = tree_.Columns().size();
    std::string key;
    while (NextGoodRow(reader)) {
      const auto fields = reader.Fields();
      JoinKeys(fields.subspan(own), key);
      if (loaded_.leaves.Insert(key, static_cast<uint32_t>(node_of_row_.size()))) continue;
      if (record_) Record(fields, loaded_.rows);
      node_of_row_.push_back(tree_.Add(fields.first(own), reader));
    }
  }

 private:
  MemberTree& tree_;
  bool record_;
  LoadedHierarchy& loaded_;
  std::vector<uint32_t>& node_of_row_;
};

}  // namespace

LoadedHierarchy LoadHierarchy(const TableSource& source, const CubeSchema& cube,
                              const DimensionSchema& dimension, const HierarchySchema& hierarchy,
                              const HierarchyOptions& options) {
  LoadedHierarchy loaded;
  loaded.is_time = dimension.is_time;
  loaded.has_table = !hierarchy.table.name.empty();
  MemberTree tree(hierarchy);
  std::vector<uint32_t> node_of_row;
  if (loaded.has_table) {
    loaded.fact_columns = {dimension.foreign_key};
    LoadRows(source, hierarchy, tree, options.record, loaded, node_of_row);
  } else {
    for (const LevelSchema& level : hierarchy.levels) loaded.fact_columns.push_back(level.column);
    RowsOfFacts rows(tree, options.record, loaded, node_of_row);
    if (options.before != nullptr) {
      RecordedReader before(*options.before, options.used);
      rows.Load(before);
    }
    rows.Load(*source.Open(cube.fact_table, rows.Columns()));
  }
  std::vector<uint32_t> leaf_of_node;
  const TableName& table = loaded.has_table ? hierarchy.table : cube.fact_table;
  loaded.members = tree.Finish(dimension.name, "table " + Quoted(ShownName(table)), leaf_of_node);
  for (uint32_t& node : node_of_row) node = leaf_of_node[node];
  loaded.leaves.Finish(node_of_row);
  if (options.record) {
    loaded.rows.leaves = std::move(node_of_row);
    Sort(loaded.rows);
  }
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
