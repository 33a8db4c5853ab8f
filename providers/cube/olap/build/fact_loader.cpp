#include "providers/cube/olap/build/fact_loader.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <memory>
#include <utility>

#include "providers/cube/olap/build/fact_sorter.h"
#include "providers/cube/olap/build/member_tree.h"
#include "providers/cube/olap/build/read_ahead.h"
#include "providers/cube/olap/build/table_source.h"
#include "providers/cube/olap/build/value_column.h"

namespace vok::olap {
namespace {

/// The key of a fact in a hierarchy without a table: the keys of its levels, told apart by lengths.
void JoinKeys(std::span<const Field> fields, std::string& key) {
  key.clear();
  for (const Field& field : fields) {
    key += field.is_null ? "-" : std::to_string(field.text.size());
    key += ':';
    key += field.text;
  }
}

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

/// The members are those that the facts name.
void LoadRowsOfFacts(const TableSource& source, const std::string& fact_table, MemberTree& tree,
                     const std::vector<std::string>& key_columns, KeyMap& keys,
                     std::vector<uint32_t>& node_of_row) {
  auto columns = tree.Columns();
  const std::size_t own = columns.size();
  columns.insert(columns.end(), key_columns.begin(), key_columns.end());
  const auto reader = source.Open(fact_table, columns);
  std::string key;
  while (reader->Next()) {
    const auto fields = reader->Fields();
    JoinKeys(fields.subspan(own), key);
    if (keys.Insert(key, static_cast<uint32_t>(node_of_row.size()))) continue;
    node_of_row.push_back(tree.Add(fields.first(own), *reader));
  }
}

/// Reads the fact table into packed keys and value columns.
template <typename Key>
class Loader {
 public:
  Loader(const TableSource& source, const CubeSchema& cube,
         const std::vector<LoadedHierarchy>& hierarchies, const Progress& progress)
      : source_(source), cube_(cube), hierarchies_(hierarchies), progress_(progress) {}

  LoadedFacts Load() {
    PlanKeys();
    PlanValues();
    ReadRows();
    LoadedFacts loaded;
    loaded.fact_count = keys_->size();
    progress_("sorting the facts of " + cube_.name, 0);
    Arrange();
    loaded.facts = Facts();
    return loaded;
  }

 private:
  struct KeyPlan {
    uint32_t hierarchy = 0;
    uint32_t shift = 0;
    uint32_t bits = 0;
    std::size_t first_column = 0;
  };
  struct ValuePlan {
    std::string column;
    Aggregator aggregator;
    std::size_t place = 0;
  };

  void PlanKeys() {
    for (const uint32_t index : SortOrder(hierarchies_)) {
      const LoadedHierarchy& hierarchy = hierarchies_[index];
      const auto bits = static_cast<uint32_t>(std::bit_width(hierarchy.members.LeafCount() - 1));
      key_plans_.push_back({index, 0, bits, columns_.size()});
      columns_.insert(columns_.end(), hierarchy.fact_columns.begin(), hierarchy.fact_columns.end());
    }
    for (auto plan = key_plans_.rbegin(); plan != key_plans_.rend(); ++plan) {
      plan->shift = key_bits_;
      key_bits_ += plan->bits;
    }
  }

  /// Measures that aggregate one column in one way share their stored values.
  void PlanValues() {
    values_ = std::make_shared<std::vector<ValueColumn>>();
    for (const MeasureSchema& measure : cube_.measures) {
      const auto same =
          std::find_if(value_plans_.begin(), value_plans_.end(), [&](const ValuePlan& plan) {
            return plan.column == measure.column && plan.aggregator == measure.aggregator;
          });
      value_of_measure_.push_back(static_cast<uint32_t>(same - value_plans_.begin()));
      if (same != value_plans_.end()) continue;
      value_plans_.push_back({measure.column, measure.aggregator, columns_.size()});
      if (!measure.column.empty()) columns_.push_back(measure.column);
      values_->emplace_back(measure.aggregator);
    }
  }

  void ReadRows() {
    const auto reader = ReadAhead(source_.Open(cube_.fact_table, columns_));
    keys_ = std::make_shared<std::vector<Key>>();
    keys_->reserve(reader->RowEstimate());
    for (ValueColumn& column : *values_) column.Reserve(reader->RowEstimate());
    const std::string what = "reading " + cube_.fact_table;
    constexpr uint64_t kReportRows = 1 << 18;
    while (reader->Next()) {
      if (keys_->size() == std::numeric_limits<uint32_t>::max()) {
        throw BadInput(reader->Place(), "a cube holds at most 4294967295 facts");
      }
      if (keys_->size() % kReportRows == 0) progress_(what, reader->Done());
      ReadRow(*reader);
    }
  }

  void ReadRow(const TableReader& reader) {
    const auto fields = reader.Fields();
    Key key = 0;
    for (const KeyPlan& plan : key_plans_) key |= Key{LeafOf(plan, reader)} << plan.shift;
    keys_->push_back(key);
    for (std::size_t index = 0; index < value_plans_.size(); ++index) {
      const ValuePlan& plan = value_plans_[index];
      const Field field = plan.column.empty() ? Field{} : fields[plan.place];
      if ((*values_)[index].Add(field)) continue;
      throw BadInput(reader.Place(), Quoted(field.text) + " in column " + Quoted(plan.column) +
                                         " is no number (a point for decimals, no blanks), or " +
                                         "one too large");
    }
  }

  uint32_t LeafOf(const KeyPlan& plan, const TableReader& reader) {
    const LoadedHierarchy& hierarchy = hierarchies_[plan.hierarchy];
    const Field* field = &reader.Fields()[plan.first_column];
    if (!hierarchy.has_table) {
      JoinKeys({field, hierarchy.fact_columns.size()}, joined_);
      return hierarchy.leaves.Find(joined_);
    }
    const uint32_t leaf = field->is_null ? KeyMap::kAbsent : hierarchy.leaves.Find(field->text);
    if (leaf == KeyMap::kAbsent) {
      throw BadInput(reader.Place(), "the key " + Quoted(field->text) + " in column " +
                                         Quoted(hierarchy.fact_columns[0]) +
                                         " is not in the table of dimension " +
                                         Quoted(hierarchy.members.dimension_name));
    }
    return leaf;
  }

  /// Sorts, and puts rows with equal keys together where that loses nothing.
  void Arrange() {
    const auto order = SortKeys(*keys_, key_bits_);
    const bool join = std::all_of(values_->begin(), values_->end(),
                                  [](const ValueColumn& column) { return column.CanJoin(); });
    std::vector<Key>& keys = *keys_;
    std::vector<uint32_t> starts;
    std::size_t cells = 0;
    for (std::size_t row = 0; row < keys.size(); ++row) {
      if (join && row > 0 && keys[row] == keys[cells - 1]) continue;
      keys[cells++] = keys[row];
      starts.push_back(static_cast<uint32_t>(row));
    }
    starts.push_back(static_cast<uint32_t>(keys.size()));
    keys.resize(cells);
    for (ValueColumn& column : *values_) column.Arrange(order, starts);
  }

  NewFacts Facts() const {
    NewFacts facts;
    facts.rows = keys_->size();
    facts.value_of_measure = value_of_measure_;
    for (const KeyPlan& plan : key_plans_) {
      const Key mask = (Key{1} << plan.bits) - 1;
      facts.keys.push_back({plan.hierarchy, [keys = keys_, mask, shift = plan.shift](
                                                uint64_t first, std::span<int64_t> leaves) {
                              for (int64_t& leaf : leaves) {
                                leaf = static_cast<int64_t>((*keys)[first++] >> shift & mask);
                              }
                            }});
    }
    for (std::size_t index = 0; index < values_->size(); ++index) {
      facts.values.push_back(ValueSource(index));
    }
    return facts;
  }

  NewValueColumn ValueSource(std::size_t index) const {
    const auto at = [values = values_, index](uint64_t first, std::span<int64_t> out) {
      for (int64_t& value : out) value = (*values)[index].At(first++);
    };
    const auto validity = [values = values_, index](uint64_t first, std::span<int64_t> out) {
      for (int64_t& valid : out) valid = (*values)[index].IsNull(first++) ? 0 : 1;
    };
    return {(*values_)[index].Format(), at, validity};
  }

  const TableSource& source_;
  const CubeSchema& cube_;
  const std::vector<LoadedHierarchy>& hierarchies_;
  const Progress& progress_;
  std::vector<std::string> columns_;
  std::vector<KeyPlan> key_plans_;
  std::vector<ValuePlan> value_plans_;
  std::vector<uint32_t> value_of_measure_;
  uint32_t key_bits_ = 0;
  std::shared_ptr<std::vector<Key>> keys_;
  std::shared_ptr<std::vector<ValueColumn>> values_;
  std::string joined_;
};

uint32_t KeyBits(const std::vector<LoadedHierarchy>& hierarchies) {
  uint32_t bits = 0;
  for (const LoadedHierarchy& hierarchy : hierarchies) {
    bits += static_cast<uint32_t>(std::bit_width(hierarchy.members.LeafCount() - 1));
  }
  return bits;
}

}  // namespace

LoadedHierarchy LoadHierarchy(const TableSource& source, const CubeSchema& cube,
                              const DimensionSchema& dimension, const HierarchySchema& hierarchy) {
  LoadedHierarchy loaded;
  loaded.is_time = dimension.is_time;
  loaded.has_table = !hierarchy.table.empty();
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
  const std::string table = loaded.has_table ? hierarchy.table : cube.fact_table;
  loaded.members = tree.Finish(dimension.name, "table " + Quoted(table), leaf_of_node);
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

LoadedFacts LoadFacts(const TableSource& source, const CubeSchema& cube,
                      const std::vector<LoadedHierarchy>& hierarchies, const Progress& progress) {
  constexpr uint32_t kWidest = 127;
  const uint32_t bits = KeyBits(hierarchies);
  if (bits > kWidest) {
    throw BadInput("cube " + Quoted(cube.name),
                   "its hierarchies have too many members together: " + std::to_string(bits) +
                       " bits a key, at most " + std::to_string(kWidest) + " are possible");
  }
  if (bits < 64) return Loader<NarrowKey>(source, cube, hierarchies, progress).Load();
  return Loader<WideKey>(source, cube, hierarchies, progress).Load();
}

}  // namespace vok::olap
