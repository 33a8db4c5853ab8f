#include "providers/cube/olap/build/aggregate_builder.h"

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/in_order.h"
#include "providers/cube/olap/build/slice_rows.h"

namespace vok::olap {
namespace {

constexpr std::size_t kBatch = SliceCells::kMostRows;

/// Memory that threads use one after the other.
template <typename Thing>
class Idle {
 public:
  /// Null when all is in use.
  std::shared_ptr<Thing> Take() {
    const std::lock_guard lock(mutex_);
    if (things_.empty()) return nullptr;
    auto thing = std::move(things_.back());
    things_.pop_back();
    return thing;
  }
  void Put(std::shared_ptr<Thing> thing) {
    const std::lock_guard lock(mutex_);
    things_.push_back(std::move(thing));
  }

 private:
  std::mutex mutex_;
  std::vector<std::shared_ptr<Thing>> things_;
};

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

  NewCuboidSet Build(unsigned threads) {
    for (const uint32_t level : set_.time_levels) {
      Time& time = times_.emplace_back();
      time.periods = 1;
      if (choice_.time != kNoTime) {
        time.periods = cube_.hierarchies[choice_.time].levels[level].members.size();
        time.period_of_leaf = MembersOfLeaves(cube_.hierarchies[choice_.time], level);
      }
    }
    for (Time& time : times_) time.table.assign(SliceCount() * time.periods, kNoBlock);
    const auto slices = FindSlices(set_.outer, cube_, facts_, threads);
    const unsigned threads_in_memory = ThreadsInMemory(threads);
    const auto portions = Portions(slices, threads_in_memory);
    auto next = portions.begin();
    RunInOrder(threads_in_memory, [&]() -> Working {
      if (next == portions.end()) return {};
      return [this, &portion = *next++] { return AddUp(portion); };
    });
    return Finish();
  }

 private:
  struct Time {
    uint32_t periods = 1;
    std::vector<uint32_t> period_of_leaf;
    std::vector<uint32_t> table;
    uint64_t cell_count = 0;
  };
  /// Of one slice, the cells of each of the times.
  using TimeCells = std::vector<SliceCells>;
  struct PeriodBlock {
    std::size_t time = 0;
    uint32_t period = 0;
    std::size_t cells = 0;
    std::string bytes;
  };
  using SliceBlocks = std::vector<PeriodBlock>;
  /// Some facts of a slice, or all.
  struct Portion {
    uint64_t slice = 0;
    std::vector<RowRange> runs{};
    bool is_first = false;
    bool is_last = false;
  };

  uint64_t SliceCount() const {
    uint64_t slices = 1;
    for (const auto& [hierarchy, level] : set_.outer) {
      slices *= cube_.hierarchies[hierarchy].levels[level].members.size();
    }
    return slices;
  }

  /// The slices that are added up at once take so much memory together, or are one.
  unsigned ThreadsInMemory(unsigned threads) const {
    constexpr uint64_t kBytesPerFact = 16;
    uint64_t bytes = 0;
    for (const Time& time : times_) {
      bytes += uint64_t{time.periods} * inner_count_ * SliceCells::CellBytes(columns_.size());
    }
    return static_cast<unsigned>(
        std::clamp<uint64_t>(kBytesPerFact * facts_.rows / bytes, 1, threads));
  }

  /// Slices with many facts for each of their cells are added up by several threads.
  std::vector<Portion> Portions(const std::map<uint64_t, std::vector<RowRange>>& slices,
                                unsigned most) const {
    constexpr uint64_t kFactsPerCell = 8;
    const uint64_t cells = uint64_t{times_.back().periods} * inner_count_;
    std::vector<Portion> portions;
    for (const auto& [slice, runs] : slices) {
      uint64_t rows = 0;
      for (const RowRange& run : runs) rows += run.end - run.begin;
      const uint64_t count = std::clamp<uint64_t>(rows / (kFactsPerCell * cells), 1, most);
      const std::size_t first = portions.size();
      uint64_t taken = 0;
      for (RowRange run : runs) {
        while (run.begin < run.end) {
          const uint64_t begun = portions.size() - first;
          if (taken >= rows * begun / count) portions.push_back({slice});
          const uint64_t room = rows * (portions.size() - first) / count - taken;
          const uint64_t end = std::min(run.end, run.begin + room);
          portions.back().runs.push_back({run.begin, end});
          taken += end - run.begin;
          run.begin = end;
        }
      }
      portions[first].is_first = true;
      portions.back().is_last = true;
    }
    return portions;
  }

  Taking AddUp(const Portion& portion) {
    std::shared_ptr<TimeCells> cells = idle_cells_.Take();
    if (cells == nullptr) cells = NewCells();
    for (SliceCells& of_time : *cells) of_time.Clear();
    for (const RowRange& rows : portion.runs) {
      for (uint64_t first = rows.begin; first < rows.end; first += kBatch) {
        AddFacts(first, std::min<uint64_t>(kBatch, rows.end - first), cells->back());
      }
    }
    if (!portion.is_first || !portion.is_last) {
      return [this, &portion, cells] { AddPortion(portion, cells); };
    }
    const auto blocks = std::make_shared<const SliceBlocks>(BlocksOf(*cells));
    idle_cells_.Put(cells);
    return [this, &portion, blocks] { Write(portion.slice, *blocks); };
  }

  /// Of a slice that has several.
  void AddPortion(const Portion& portion, const std::shared_ptr<TimeCells>& cells) {
    if (portion.is_first) {
      first_cells_ = cells;
      return;
    }
    first_cells_->back().AddCells(cells->back());
    idle_cells_.Put(cells);
    if (!portion.is_last) return;
    Write(portion.slice, BlocksOf(*first_cells_));
    idle_cells_.Put(std::exchange(first_cells_, nullptr));
  }

  std::shared_ptr<TimeCells> NewCells() const {
    auto cells = std::make_shared<TimeCells>();
    for (const Time& time : times_) {
      cells->emplace_back(columns_, facts_, std::size_t{time.periods} * inner_count_);
    }
    return cells;
  }

  void AddFacts(uint64_t first, std::size_t count, SliceCells& cells) const {
    std::array<int64_t, kBatch> values;
    std::array<std::size_t, kBatch> places{};
    if (choice_.time != kNoTime) {
      LeavesOf(facts_, choice_.time)(first, std::span(values).first(count));
      for (std::size_t row = 0; row < count; ++row) {
        places[row] = std::size_t{inner_count_} *
                      times_.back().period_of_leaf[static_cast<std::size_t>(values[row])];
      }
    }
    LeavesOf(facts_, choice_.inner)(first, std::span(values).first(count));
    for (std::size_t row = 0; row < count; ++row) {
      places[row] += static_cast<std::size_t>(values[row]);
    }
    cells.AddRows(facts_, columns_, first, std::span(places).first(count));
  }

  /// Adds the cells of a time up into those of the next longer one.
  void AddPeriods(std::size_t time, TimeCells& cells) const {
    const auto& finer = times_[time].period_of_leaf;
    const auto& coarser = times_[time - 1].period_of_leaf;
    for (std::size_t leaf = 0; leaf < finer.size(); ++leaf) {
      if (leaf > 0 && finer[leaf] == finer[leaf - 1]) continue;
      const std::size_t from = std::size_t{finer[leaf]} * inner_count_;
      const std::size_t to = std::size_t{coarser[leaf]} * inner_count_;
      for (uint32_t inner = 0; inner < inner_count_; ++inner) {
        if (!cells[time].IsPresent(from + inner)) continue;
        cells[time - 1].AddCell(to + inner, cells[time], from + inner);
      }
    }
  }

  /// Of all times, whose cells those of the last give.
  SliceBlocks BlocksOf(TimeCells& cells) const {
    for (std::size_t time = times_.size() - 1; time > 0; --time) AddPeriods(time, cells);
    SliceBlocks blocks;
    for (std::size_t time = 0; time < times_.size(); ++time) {
      for (uint32_t period = 0; period < times_[time].periods; ++period) {
        auto bytes = cells[time].Block(std::size_t{period} * inner_count_, inner_count_);
        if (bytes.empty()) continue;
        blocks.push_back({time, period, cells[time].LastBlockCells(), std::move(bytes)});
      }
    }
    return blocks;
  }

  void Write(uint64_t slice, const SliceBlocks& blocks) {
    for (const PeriodBlock& block : blocks) {
      Time& time = times_[block.time];
      time.table[slice * time.periods + block.period] = writer_.AddBlock(block.bytes);
      time.cell_count += block.cells;
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
  std::vector<Time> times_;
  Idle<TimeCells> idle_cells_;
  std::shared_ptr<TimeCells> first_cells_;  // of a slice in several portions, while it is added up
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
                              const NewFacts& facts, unsigned threads, CubeWriter& writer) {
  NewAggregates aggregates{choice.inner, choice.time, {}, {}};
  for (const AggregatedColumn& column : AggregatedColumns(cube, facts)) {
    aggregates.columns.push_back(column.value_column);
  }
  for (const ChosenSet& set : choice.sets) {
    aggregates.sets.push_back(SetBuilder(choice, set, cube, facts, writer).Build(threads));
  }
  return aggregates;
}

}  // namespace vok::olap
