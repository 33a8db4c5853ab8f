#include "providers/cube/olap/build/aggregate_builder.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>

namespace vok::olap {
namespace {

constexpr std::size_t kBatch = SliceCells::kMostRows;

struct Rows {
  uint64_t begin = 0;
  uint64_t end = 0;
};

/// The member of the level that each leaf stands below, counted from the level's first.
std::vector<uint32_t> MembersOfLeaves(const NewHierarchy& hierarchy, uint32_t level) {
  const IdRange leaves = hierarchy.levels.back().members;
  std::vector<uint32_t> members(leaves.size());
  for (MemberId leaf = leaves.begin; leaf < leaves.end; ++leaf) {
    MemberId member = leaf;
    for (std::size_t at = hierarchy.levels.size() - 1; at > level; --at) {
      member = hierarchy.members[member].parent;
    }
    members[leaf - leaves.begin] = member - hierarchy.levels[level].members.begin;
  }
  return members;
}

/// Builds the cuboids of one set, slice by slice.
class SetBuilder {
 public:
  SetBuilder(const AggregateChoice& choice, const ChosenSet& set, const NewCube& cube,
             const NewFacts& facts, CubeWriter& writer)
      : choice_(choice),
        set_(set),
        cube_(cube),
        facts_(facts),
        writer_(writer),
        columns_(AggregatedColumns(cube, facts)),
        inner_count_(cube.hierarchies[choice.inner].LeafCount()) {}

  NewCuboidSet Build() {
    for (const uint32_t level : set_.time_levels) {
      Time& time = times_.emplace_back();
      time.periods = 1;
      if (choice_.time != kNoTime) {
        time.periods = cube_.hierarchies[choice_.time].levels[level].members.size();
        time.period_of_leaf = MembersOfLeaves(cube_.hierarchies[choice_.time], level);
      }
      time.cells.emplace_back(columns_, facts_, std::size_t{time.periods} * inner_count_);
    }
    const auto rows_of_slice = FindSlices();
    for (Time& time : times_) time.table.assign(slices_ * time.periods, kNoBlock);
    for (const auto& [slice, rows] : rows_of_slice) BuildSlice(slice, rows);
    return Finish();
  }

 private:
  struct Time {
    uint32_t periods = 1;
    std::vector<uint32_t> period_of_leaf;
    std::vector<SliceCells> cells;  // one; a vector since it is made late
    std::vector<uint32_t> table;
    uint64_t cell_count = 0;
  };

  const ColumnSource& LeavesOf(uint32_t hierarchy) const {
    return std::find_if(facts_.keys.begin(), facts_.keys.end(),
                        [&](const NewKeyColumn& key) { return key.hierarchy == hierarchy; })
        ->leaves;
  }

  /// Where the facts of each slice lie: as few runs as facts are sorted by the outer hierarchies.
  std::map<uint64_t, std::vector<Rows>> FindSlices() {
    std::vector<std::vector<uint32_t>> members;
    slices_ = 1;
    for (const auto& [hierarchy, level] : set_.outer) {
      members.push_back(MembersOfLeaves(cube_.hierarchies[hierarchy], level));
      slices_ *= cube_.hierarchies[hierarchy].levels[level].members.size();
    }
    std::map<uint64_t, std::vector<Rows>> found;
    std::array<int64_t, kBatch> leaves;
    std::array<uint64_t, kBatch> slices;
    uint64_t last = std::numeric_limits<uint64_t>::max();
    std::vector<Rows>* runs = nullptr;
    for (uint64_t first = 0; first < facts_.rows; first += kBatch) {
      const auto count = std::min<uint64_t>(kBatch, facts_.rows - first);
      slices.fill(0);
      for (std::size_t place = 0; place < members.size(); ++place) {
        const auto [hierarchy, level] = set_.outer[place];
        const uint64_t radix = cube_.hierarchies[hierarchy].levels[level].members.size();
        LeavesOf(hierarchy)(first, std::span(leaves).first(count));
        for (std::size_t row = 0; row < count; ++row) {
          slices[row] = slices[row] * radix + members[place][static_cast<std::size_t>(leaves[row])];
        }
      }
      for (std::size_t row = 0; row < count; ++row) {
        if (slices[row] != last) {
          runs = &found[slices[row]];
          runs->push_back({first + row, first + row});
          last = slices[row];
        }
        runs->back().end = first + row + 1;
      }
    }
    return found;
  }

  void BuildSlice(uint64_t slice, const std::vector<Rows>& runs) {
    for (Time& time : times_) time.cells.front().Clear();
    for (const Rows& rows : runs) {
      for (uint64_t first = rows.begin; first < rows.end; first += kBatch) {
        AddFacts(first, std::min<uint64_t>(kBatch, rows.end - first));
      }
    }
    for (std::size_t index = times_.size() - 1; index > 0; --index) {
      AddPeriods(times_[index], times_[index - 1]);
    }
    for (Time& time : times_) WriteSlice(slice, time);
  }

  void AddFacts(uint64_t first, std::size_t count) {
    std::array<int64_t, kBatch> values;
    std::array<std::size_t, kBatch> places{};
    Time& finest = times_.back();
    if (choice_.time != kNoTime) {
      LeavesOf(choice_.time)(first, std::span(values).first(count));
      for (std::size_t row = 0; row < count; ++row) {
        places[row] = std::size_t{inner_count_} *
                      finest.period_of_leaf[static_cast<std::size_t>(values[row])];
      }
    }
    LeavesOf(choice_.inner)(first, std::span(values).first(count));
    for (std::size_t row = 0; row < count; ++row) {
      places[row] += static_cast<std::size_t>(values[row]);
    }
    finest.cells.front().AddRows(facts_, columns_, first, std::span(places).first(count));
  }

  void AddPeriods(const Time& finer, Time& coarser) const {
    const auto& leaf_periods = finer.period_of_leaf;
    for (std::size_t leaf = 0; leaf < leaf_periods.size(); ++leaf) {
      if (leaf > 0 && leaf_periods[leaf] == leaf_periods[leaf - 1]) continue;
      const std::size_t from = std::size_t{leaf_periods[leaf]} * inner_count_;
      const std::size_t to = std::size_t{coarser.period_of_leaf[leaf]} * inner_count_;
      for (uint32_t inner = 0; inner < inner_count_; ++inner) {
        if (!finer.cells.front().IsPresent(from + inner)) continue;
        coarser.cells.front().AddCell(to + inner, finer.cells.front(), from + inner);
      }
    }
  }

  void WriteSlice(uint64_t slice, Time& time) {
    for (uint32_t period = 0; period < time.periods; ++period) {
      const auto bytes = time.cells.front().Block(std::size_t{period} * inner_count_, inner_count_);
      if (bytes.empty()) continue;
      time.table[slice * time.periods + period] = writer_.AddBlock(bytes);
      time.cell_count += time.cells.front().LastBlockCells();
    }
  }

  NewCuboidSet Finish() {
    NewCuboidSet built{set_.outer, {}};
    for (std::size_t index = 0; index < times_.size(); ++index) {
      const auto& table = times_[index].table;
      const std::string_view bytes(reinterpret_cast<const char*>(table.data()),
                                   table.size() * sizeof(uint32_t));
      built.cuboids.push_back(
          {set_.time_levels[index], times_[index].cell_count, writer_.AddBlock(bytes)});
    }
    return built;
  }

  const AggregateChoice& choice_;
  const ChosenSet& set_;
  const NewCube& cube_;
  const NewFacts& facts_;
  CubeWriter& writer_;
  std::vector<AggregatedColumn> columns_;
  uint32_t inner_count_;
  uint64_t slices_ = 1;
  std::vector<Time> times_;
};

}  // namespace

std::vector<AggregatedColumn> AggregatedColumns(const NewCube& cube, const NewFacts& facts) {
  std::vector<AggregatedColumn> columns;
  for (std::size_t measure = 0; measure < cube.measures.size(); ++measure) {
    const uint32_t column = facts.value_of_measure[measure];
    const Aggregator aggregator = cube.measures[measure].aggregator;
    const ValueFormat& format = facts.values[column].format;
    const bool is_extreme = aggregator == Aggregator::kMin || aggregator == Aggregator::kMax;
    const bool exact = format.kind == NumberKind::kDecimal && (is_extreme || format.is_narrow);
    const bool seen = std::any_of(columns.begin(), columns.end(),
                                  [&](const auto& each) { return each.value_column == column; });
    if (exact && !seen && aggregator != Aggregator::kDistinctCount) {
      columns.push_back({column, aggregator});
    }
  }
  return columns;
}

NewAggregates BuildAggregates(const AggregateChoice& choice, const NewCube& cube,
                              const NewFacts& facts, CubeWriter& writer) {
  NewAggregates aggregates{choice.inner, choice.time, {}, {}};
  for (const AggregatedColumn& column : AggregatedColumns(cube, facts)) {
    aggregates.columns.push_back(column.value_column);
  }
  for (const ChosenSet& set : choice.sets) {
    aggregates.sets.push_back(SetBuilder(choice, set, cube, facts, writer).Build());
  }
  return aggregates;
}

}  // namespace vok::olap
