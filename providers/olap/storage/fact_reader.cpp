#include "providers/olap/storage/fact_reader.h"

#include <algorithm>
#include <array>
#include <optional>

#include "providers/olap/storage/packed_column.h"
#include "providers/olap/storage/slice_scan.h"
#include "providers/olap/storage/tally.h"

namespace vok::olap {
namespace {

constexpr std::size_t kBatch = 1024;

struct ValueColumn {
  ValueFormat format;
  PackedColumn values;
  PackedColumn validity;
};

struct StoredMeasure {
  Aggregator aggregator;
  uint32_t value_column;
};

struct StoredHierarchy {
  uint32_t key_column = 0;
  uint32_t leaf_count = 0;
  /// For each level the leaf range of its members, in order.
  std::vector<std::vector<uint32_t>> level_ends;
};

struct Columns {
  uint64_t rows = 0;
  std::vector<PackedColumn> keys;  // in the order of sorting
  std::vector<ValueColumn> values;
  std::vector<StoredMeasure> measures;
  std::vector<StoredHierarchy> hierarchies;
};

/// Which group every leaf belongs to. Keys of damaged facts, up to twice the number of leaves, fall
/// into groups that are not listed.
class Grouping {
 public:
  Grouping() = default;
  Grouping(const StoredHierarchy& hierarchy, uint32_t level)
      : column_(hierarchy.key_column), slots_(2 * std::size_t{hierarchy.leaf_count} + 1) {
    const auto& ends = hierarchy.level_ends[level];
    count_ = ends.size();
    if (count_ == hierarchy.leaf_count) return;
    group_of_leaf_.assign(slots_, static_cast<uint32_t>(count_));
    uint32_t leaf = 0;
    for (uint32_t group = 0; group < count_; ++group) {
      for (; leaf < ends[group]; ++leaf) group_of_leaf_[leaf] = group;
    }
  }

  std::size_t count() const { return count_; }
  std::size_t slots() const { return slots_; }

  void GroupsOf(const Columns& columns, uint64_t row, std::span<uint32_t> groups) const {
    if (!column_) return;  // all in group 0, as the buffer was made
    columns.keys[*column_].Unpack(row, groups.size(), groups.data());
    if (group_of_leaf_.empty()) return;
    for (uint32_t& group : groups) group = group_of_leaf_[group];
  }

 private:
  std::optional<uint32_t> column_;
  std::size_t count_ = 1;
  std::size_t slots_ = 1;
  std::vector<uint32_t> group_of_leaf_;
};

class StoredFacts : public FactStore {
 public:
  explicit StoredFacts(Columns columns) : columns_(std::move(columns)) {}

  std::vector<FactColumn> Read(const FactQuery& query) const override;

 private:
  std::vector<std::optional<LeafFilter>> FiltersOf(const FactQuery& query) const;
  void AddRows(const FactQuery& query, const Grouping& grouping, RowRange rows,
               std::span<const std::unique_ptr<Tally>> tallies) const;

  Columns columns_;
};

std::vector<FactColumn> StoredFacts::Read(const FactQuery& query) const {
  Grouping grouping;
  if (query.group) {
    grouping = Grouping(columns_.hierarchies[query.group->hierarchy], query.group->level);
  }
  std::vector<std::unique_ptr<Tally>> tallies;
  for (const uint32_t measure : query.measures) {
    const StoredMeasure& stored = columns_.measures[measure];
    tallies.push_back(Tally::Make(stored.aggregator, columns_.values[stored.value_column].format,
                                  grouping.slots()));
  }
  const auto filters = FiltersOf(query);
  for (const RowRange& rows : SliceScan(columns_.keys, filters).Find(columns_.rows)) {
    AddRows(query, grouping, rows, tallies);
  }
  std::vector<FactColumn> results;
  for (const auto& tally : tallies) results.push_back(tally->Result(grouping.count()));
  return results;
}

std::vector<std::optional<LeafFilter>> StoredFacts::FiltersOf(const FactQuery& query) const {
  std::vector<std::optional<LeafFilter>> filters(columns_.keys.size());
  const std::size_t count = std::min(query.leaves.size(), columns_.hierarchies.size());
  for (std::size_t index = 0; index < count; ++index) {
    const StoredHierarchy& hierarchy = columns_.hierarchies[index];
    const auto& ranges = query.leaves[index];
    if (ranges.empty()) continue;
    if (ranges.front().begin == 0 && ranges.front().end >= hierarchy.leaf_count) continue;
    filters[hierarchy.key_column].emplace(ranges, hierarchy.leaf_count);
  }
  return filters;
}

void StoredFacts::AddRows(const FactQuery& query, const Grouping& grouping, RowRange rows,
                          std::span<const std::unique_ptr<Tally>> tallies) const {
  std::array<uint32_t, kBatch> groups{};
  std::array<int64_t, kBatch> values;
  std::array<int64_t, kBatch> validity;
  while (rows.begin < rows.end) {
    const uint64_t chunk_rest = kChunkRows - rows.begin % kChunkRows;
    const auto count = std::min({rows.end - rows.begin, chunk_rest, uint64_t{kBatch}});
    grouping.GroupsOf(columns_, rows.begin, std::span(groups).first(count));
    for (std::size_t index = 0; index < tallies.size(); ++index) {
      const StoredMeasure& measure = columns_.measures[query.measures[index]];
      const ValueColumn& column = columns_.values[measure.value_column];
      column.values.Unpack(rows.begin, count, values.data());
      if (column.format.has_nulls) column.validity.Unpack(rows.begin, count, validity.data());
      tallies[index]->Add(std::span(groups).first(count), std::span(values).first(count),
                          std::span(validity).first(column.format.has_nulls ? count : 0));
    }
    rows.begin += count;
  }
}

/// Reads the section and checks that it fits the model.
class SectionReader {
 public:
  SectionReader(const BlockStore& blocks, ByteReader section, const CubeModel& model)
      : blocks_(blocks), section_(section), model_(model) {}

  Columns Read() {
    columns_.rows = section_.Get<uint64_t>();
    Require(section_.Get<uint32_t>() == kChunkRows && columns_.rows <= model_.fact_count);
    const auto keys = ReadKeyHierarchies();
    ReadFormats();
    ReadMeasures();
    ReadChunks(keys);
    return std::move(columns_);
  }

 private:
  std::vector<uint32_t> ReadKeyHierarchies() {
    std::vector<uint32_t> keys(section_.GetCount(sizeof(uint32_t)));
    Require(keys.size() == model_.hierarchies.size());
    columns_.hierarchies.resize(keys.size());
    std::vector<bool> seen(keys.size());
    for (uint32_t column = 0; column < keys.size(); ++column) {
      const auto index = section_.Get<uint32_t>();
      Require(index < keys.size() && !seen[index]);
      seen[index] = true;
      keys[column] = index;
      columns_.hierarchies[index] = HierarchyOf(model_.hierarchies[index], column);
    }
    return keys;
  }

  static StoredHierarchy HierarchyOf(const Hierarchy& hierarchy, uint32_t column) {
    StoredHierarchy stored{column, hierarchy.LeafCount(), {}};
    for (const Level& level : hierarchy.levels()) {
      auto& ends = stored.level_ends.emplace_back();
      for (MemberId member = level.members.begin; member < level.members.end; ++member) {
        ends.push_back(hierarchy.Leaves(member).end);
      }
    }
    return stored;
  }

  void ReadFormats() {
    columns_.values.resize(section_.GetCount(sizeof(ValueFormat)));
    for (ValueColumn& column : columns_.values) {
      const auto kind = section_.Get<uint8_t>();
      column.format.scale = section_.Get<uint8_t>();
      const auto is_narrow = section_.Get<uint8_t>();
      const auto has_nulls = section_.Get<uint8_t>();
      Require(kind <= static_cast<uint8_t>(ValueKind::kDouble) && is_narrow <= 1 &&
              has_nulls <= 1 && column.format.scale <= kMaxScale);
      column.format.kind = static_cast<ValueKind>(kind);
      column.format.is_narrow = is_narrow != 0;
      column.format.has_nulls = has_nulls != 0;
    }
  }

  void ReadMeasures() {
    for (const Measure& measure : model_.measures) {
      const auto column = section_.Get<uint32_t>();
      Require(column < columns_.values.size());
      columns_.measures.push_back({measure.aggregator, column});
    }
  }

  void ReadChunks(const std::vector<uint32_t>& keys) {
    const auto block = section_.Get<uint32_t>();
    Require(block < blocks_.count());
    ByteReader table(blocks_.Block(block), blocks_.file_name());
    const uint64_t chunk_count = columns_.rows / kChunkRows + (columns_.rows % kChunkRows != 0);
    const auto next = [&] {
      return PackedColumn(blocks_, table.GetAll<ChunkEntry>(chunk_count), columns_.rows);
    };
    for (const uint32_t hierarchy : keys) {
      columns_.keys.push_back(next());
      RequireWithin(columns_.keys.back(), 0, model_.hierarchies[hierarchy].LeafCount() - 1);
    }
    for (ValueColumn& column : columns_.values) {
      column.values = next();
      if (!column.format.has_nulls) continue;
      column.validity = next();
      RequireWithin(column.validity, 0, 1);
    }
  }

  void RequireWithin(const PackedColumn& column, int64_t low, int64_t high) const {
    for (const ChunkEntry& chunk : column.chunks()) {
      Require(chunk.low >= low && chunk.high <= high);
    }
  }

  void Require(bool condition) const {
    if (!condition) {
      throw DamagedCubeFile(blocks_.file_name(), "the description of its facts is not valid");
    }
  }

  const BlockStore& blocks_;
  ByteReader section_;
  const CubeModel& model_;
  Columns columns_;
};

}  // namespace

std::unique_ptr<FactStore> ReadFactsSection(const BlockStore& blocks, ByteReader section,
                                            const CubeModel& model) {
  return std::make_unique<StoredFacts>(SectionReader(blocks, section, model).Read());
}

}  // namespace vok::olap
