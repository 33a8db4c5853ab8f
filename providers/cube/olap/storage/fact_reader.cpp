#include "providers/cube/olap/storage/fact_reader.h"

#include <algorithm>
#include <array>
#include <optional>

#include "providers/cube/olap/storage/cuboid_scan.h"
#include "providers/cube/olap/storage/packed_column.h"
#include "providers/cube/olap/storage/read_plan.h"
#include "providers/cube/olap/storage/slice_scan.h"
#include "providers/cube/olap/storage/tally.h"

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

struct Columns {
  uint64_t rows = 0;
  std::vector<PackedColumn> keys;  // in the order of sorting
  std::vector<ValueColumn> values;
  std::vector<StoredMeasure> measures;
  std::vector<uint32_t> key_of_hierarchy;  // index into `keys`
  std::vector<LeafLevels> levels;          // of each hierarchy
  std::optional<Cuboids> cuboids;
};

/// A measure of a query: the values that it is made of, and where they are added up.
struct Target {
  uint32_t value_column;
  Tally* tally;
};

/// Adds rows of the facts to the targets.
class RowAdder {
 public:
  RowAdder(const Columns& columns, const Grouping& grouping, std::span<const Target> targets,
           CancelCheck& watch)
      : grouping_(grouping), watch_(watch) {
    if (grouping.hierarchy()) {
      groups_of_.emplace(columns.keys[columns.key_of_hierarchy[*grouping.hierarchy()]]);
    }
    for (const Target& target : targets) {
      const ValueColumn& column = columns.values[target.value_column];
      Source& source = sources_.emplace_back(Source{ColumnReader(column.values), {}, target.tally});
      if (column.format.has_nulls) source.validity.emplace(column.validity);
    }
  }

  void Add(RowRange rows) {
    while (rows.begin < rows.end) {
      const uint64_t chunk_rest = kChunkRows - rows.begin % kChunkRows;
      const auto count = std::min({rows.end - rows.begin, chunk_rest, uint64_t{kBatch}});
      watch_.Count(count);
      AddBatch(rows.begin, count);
      rows.begin += count;
    }
  }

 private:
  struct Source {
    ColumnReader values;
    std::optional<ColumnReader> validity;
    Tally* tally;
  };

  void AddBatch(uint64_t row, std::size_t count) {
    if (groups_of_) {
      groups_of_->Unpack(row, count, groups_.data());
      grouping_.Map(std::span(groups_).first(count));
    }
    for (Source& source : sources_) {
      source.values.Unpack(row, count, values_.data());
      if (source.validity) source.validity->Unpack(row, count, validity_.data());
      source.tally->Add(std::span(groups_).first(count), std::span(values_).first(count),
                        std::span(validity_).first(source.validity ? count : 0));
    }
  }

  const Grouping& grouping_;
  CancelCheck& watch_;
  std::optional<ColumnReader> groups_of_;
  std::vector<Source> sources_;
  std::array<uint32_t, kBatch> groups_{};
  std::array<int64_t, kBatch> values_;
  std::array<int64_t, kBatch> validity_;
};

class StoredFacts : public FactStore, private FactRows {
 public:
  StoredFacts(const BlockStore& blocks, Columns columns)
      : blocks_(blocks), columns_(std::move(columns)) {}

  std::vector<FactColumn> Read(const FactQuery& query) const override;
  const FactRows* Rows() const override { return this; }

 private:
  uint64_t rows() const override { return columns_.rows; }
  void ReadLeaves(uint32_t hierarchy, uint64_t first, std::span<int64_t> leaves) const override {
    ReadRows(columns_.keys[columns_.key_of_hierarchy[hierarchy]], first, leaves);
  }
  std::vector<ValueFormat> Formats() const override;
  void ReadValues(std::size_t column, uint64_t first, std::span<int64_t> values) const override {
    ReadRows(columns_.values[column].values, first, values);
  }
  void ReadValidity(std::size_t column, uint64_t first,
                    std::span<int64_t> validity) const override {
    ReadRows(columns_.values[column].validity, first, validity);
  }
  static void ReadRows(const PackedColumn& column, uint64_t first, std::span<int64_t> values);

  LeafSlice SliceOf(const FactQuery& query) const;
  void AddByPlan(const LeafSlice& slice, const Grouping& grouping, std::span<const Target> targets,
                 CancelCheck& watch) const;
  void AddFacts(const LeafSlice& slice, const Grouping& grouping, std::span<const Target> targets,
                CancelCheck& watch) const;

  const BlockStore& blocks_;
  Columns columns_;
};

std::vector<FactColumn> StoredFacts::Read(const FactQuery& query) const {
  Grouping grouping;
  if (query.group) {
    const auto [hierarchy, level] = *query.group;
    grouping = Grouping(columns_.levels[hierarchy], hierarchy, level);
  }
  std::vector<std::unique_ptr<Tally>> tallies;
  std::vector<Target> planned;
  std::vector<Target> others;
  for (const uint32_t measure : query.measures) {
    const StoredMeasure& stored = columns_.measures[measure];
    tallies.push_back(Tally::Make(stored.aggregator, columns_.values[stored.value_column].format,
                                  grouping.slots()));
    const bool aggregated = columns_.cuboids && columns_.cuboids->PlaceOf(stored.value_column);
    (aggregated ? planned : others).push_back({stored.value_column, tallies.back().get()});
  }
  const LeafSlice slice = SliceOf(query);
  CancelCheck watch(query.check);
  if (!planned.empty()) AddByPlan(slice, grouping, planned, watch);
  if (!others.empty()) AddFacts(slice, grouping, others, watch);
  std::vector<FactColumn> results;
  results.reserve(tallies.size());
  for (const auto& tally : tallies) results.push_back(tally->Result(grouping.count()));
  return results;
}

std::vector<ValueFormat> StoredFacts::Formats() const {
  std::vector<ValueFormat> formats;
  formats.reserve(columns_.values.size());
  for (const ValueColumn& column : columns_.values) formats.push_back(column.format);
  return formats;
}

void StoredFacts::ReadRows(const PackedColumn& column, uint64_t first, std::span<int64_t> values) {
  ColumnReader reader(column);
  while (!values.empty()) {
    const auto count = std::min<uint64_t>(values.size(), kChunkRows - first % kChunkRows);
    reader.Unpack(first, static_cast<std::size_t>(count), values.data());
    values = values.subspan(static_cast<std::size_t>(count));
    first += count;
  }
}

LeafSlice StoredFacts::SliceOf(const FactQuery& query) const {
  LeafSlice slice = query.leaves;
  slice.resize(columns_.levels.size());
  for (std::size_t hierarchy = 0; hierarchy < slice.size(); ++hierarchy) {
    auto& ranges = slice[hierarchy];
    const uint32_t leaves = columns_.levels[hierarchy].LeafCount();
    for (IdRange& range : ranges) range.end = std::min(range.end, leaves);
    if (ranges.size() == 1 && ranges[0] == IdRange{0, leaves}) ranges.clear();
  }
  return slice;
}

void StoredFacts::AddByPlan(const LeafSlice& slice, const Grouping& grouping,
                            std::span<const Target> targets, CancelCheck& watch) const {
  const Cuboids& cuboids = *columns_.cuboids;
  std::vector<CellTarget> cells;
  for (const Target& target : targets) {
    cells.push_back({*cuboids.PlaceOf(target.value_column), target.tally});
  }
  const ReadPlan plan = PlanRead(cuboids, columns_.levels, slice, grouping, columns_.rows);
  for (const CuboidPart& part : plan.parts) {
    AddCells(blocks_, cuboids, columns_.levels, part, slice[cuboids.inner], grouping, cells, watch);
  }
  if (plan.facts) AddFacts(*plan.facts, grouping, targets, watch);
}

void StoredFacts::AddFacts(const LeafSlice& slice, const Grouping& grouping,
                           std::span<const Target> targets, CancelCheck& watch) const {
  std::vector<std::optional<LeafFilter>> filters(columns_.keys.size());
  for (std::size_t hierarchy = 0; hierarchy < slice.size(); ++hierarchy) {
    if (slice[hierarchy].empty()) continue;
    filters[columns_.key_of_hierarchy[hierarchy]].emplace(slice[hierarchy],
                                                          columns_.levels[hierarchy].LeafCount());
  }
  RowAdder adder(columns_, grouping, targets, watch);
  for (const RowRange& rows : SliceScan(columns_.keys, filters, watch).Find(columns_.rows)) {
    adder.Add(rows);
  }
}

/// Reads the section and checks that it fits the model.
class SectionReader {
 public:
  SectionReader(BlockStore& blocks, ByteReader section, const CubeModel& model)
      : blocks_(blocks), section_(section), model_(model) {}

  Columns Read(const std::optional<ByteReader>& aggregates) {
    columns_.rows = section_.Get<uint64_t>();
    Require(section_.Get<uint32_t>() == kChunkRows && columns_.rows <= model_.fact_count);
    const auto keys = ReadKeyHierarchies();
    ReadFormats();
    ReadMeasures();
    ReadChunks(keys);
    if (aggregates) {
      std::vector<ValueFormat> formats;
      for (const ValueColumn& column : columns_.values) formats.push_back(column.format);
      columns_.cuboids = ReadCuboids(blocks_, *aggregates, columns_.levels, formats);
    }
    return std::move(columns_);
  }

 private:
  std::vector<uint32_t> ReadKeyHierarchies() {
    std::vector<uint32_t> keys(section_.GetCount(sizeof(uint32_t)));
    Require(keys.size() == model_.hierarchies.size());
    columns_.key_of_hierarchy.resize(keys.size());
    for (const Hierarchy& hierarchy : model_.hierarchies)
      columns_.levels.push_back(hierarchy.leaf_levels());
    std::vector<bool> seen(keys.size());
    for (uint32_t column = 0; column < keys.size(); ++column) {
      const auto index = section_.Get<uint32_t>();
      Require(index < keys.size() && !seen[index]);
      seen[index] = true;
      keys[column] = index;
      columns_.key_of_hierarchy[index] = column;
    }
    return keys;
  }

  void ReadFormats() {
    columns_.values.resize(section_.GetCount(sizeof(ValueFormat)));
    for (ValueColumn& column : columns_.values) {
      const auto kind = section_.Get<uint8_t>();
      column.format.scale = section_.Get<uint8_t>();
      const auto is_narrow = section_.Get<uint8_t>();
      const auto has_nulls = section_.Get<uint8_t>();
      Require(kind <= static_cast<uint8_t>(NumberKind::kDouble) && is_narrow <= 1 &&
              has_nulls <= 1 && column.format.scale <= kMaxScale);
      column.format.kind = static_cast<NumberKind>(kind);
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
    ByteReader table(blocks_.Keep(block), blocks_.file_name());
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

  BlockStore& blocks_;
  ByteReader section_;
  const CubeModel& model_;
  Columns columns_;
};

}  // namespace

std::unique_ptr<FactStore> ReadFactsSection(BlockStore& blocks, ByteReader section,
                                            const std::optional<ByteReader>& aggregates,
                                            const CubeModel& model) {
  return std::make_unique<StoredFacts>(blocks,
                                       SectionReader(blocks, section, model).Read(aggregates));
}

}  // namespace vok::olap
