#include "providers/cube/olap/storage/cuboid_scan.h"

#include <algorithm>
#include <array>

#include "providers/cube/olap/storage/aggregate_block.h"

namespace vok::olap {
namespace {

constexpr uint32_t kBatch = 1024;

class Scan {
 public:
  Scan(const BlockStore& blocks, const Cuboids& cuboids, std::span<const LeafLevels> levels,
       const CuboidPart& part, const std::vector<IdRange>& inner, const Grouping& grouping,
       std::span<const CellTarget> targets, CancelCheck& watch)
      : blocks_(blocks),
        cuboids_(cuboids),
        levels_(levels),
        part_(part),
        inner_(inner),
        grouping_(grouping),
        targets_(targets),
        watch_(watch),
        inner_count_(levels[cuboids.inner].LeafCount()) {
    if (inner_.empty()) inner_.push_back({0, inner_count_});
  }

  void Run() { Visit(0, 0, 0); }

 private:
  /// All combinations of the members of the outer levels from `place` on. `index` counts the
  /// combination of those before, `group` is theirs.
  void Visit(std::size_t place, uint64_t index, uint32_t group) {
    if (place == part_.members.size()) return AddBlock(part_.cuboid->blocks[index], group);
    const HierarchyLevel outer = part_.cuboid->outer[place];
    const LeafLevels& levels = levels_[outer.hierarchy];
    const uint64_t first = index * levels.MemberCount(outer.level);
    for (const IdRange& range : part_.members[place]) {
      for (uint32_t member = range.begin; member < range.end; ++member) {
        if (grouping_.hierarchy() == outer.hierarchy) {
          group = grouping_.GroupOf(levels.FirstLeaf(outer.level, member));
        }
        Visit(place + 1, first + member, group);
      }
    }
  }

  void AddBlock(uint32_t block, uint32_t group) {
    if (block == kNoBlock) return;
    const HeldBlock held = blocks_.Read(block);
    const AggregateBlock cells(held.bytes(), inner_count_, cuboids_.formats, blocks_.file_name());
    AggregateBlock::Cursor cursor;
    for (const IdRange& range : inner_) {
      for (uint32_t begin = range.begin; begin < range.end; begin += kBatch) {
        watch_.Count(kBatch);
        AddCells(cells, {begin, std::min(begin + kBatch, range.end)}, cursor, group);
      }
    }
  }

  void AddCells(const AggregateBlock& cells, IdRange leaves, AggregateBlock::Cursor& cursor,
                uint32_t group) {
    const AggregateBlock::Run run = cells.Find(leaves, cursor, groups_.data());
    const auto groups = std::span(groups_).first(run.count);
    if (grouping_.hierarchy() == cuboids_.inner) {
      grouping_.Map(groups);
    } else {
      std::fill(groups.begin(), groups.end(), group);
    }
    for (const CellTarget& target : targets_) AddColumn(cells, run, target);
  }

  void AddColumn(const AggregateBlock& cells, AggregateBlock::Run run, const CellTarget& target) {
    const bool has_nulls = cuboids_.formats[target.column].has_nulls;
    cells.Values(target.column, run, values_.data());
    if (has_nulls) cells.Validity(target.column, run, validity_.data());
    target.tally->Add(std::span(groups_).first(run.count), std::span(values_).first(run.count),
                      std::span(validity_).first(has_nulls ? run.count : 0));
  }

  const BlockStore& blocks_;
  const Cuboids& cuboids_;
  std::span<const LeafLevels> levels_;
  const CuboidPart& part_;
  std::vector<IdRange> inner_;
  const Grouping& grouping_;
  std::span<const CellTarget> targets_;
  CancelCheck& watch_;
  uint32_t inner_count_;
  std::array<uint32_t, kBatch> groups_;
  std::array<int64_t, kBatch> values_;
  std::array<int64_t, kBatch> validity_;
};

}  // namespace

void AddCells(const BlockStore& blocks, const Cuboids& cuboids, std::span<const LeafLevels> levels,
              const CuboidPart& part, const std::vector<IdRange>& inner, const Grouping& grouping,
              std::span<const CellTarget> targets, CancelCheck& watch) {
  Scan(blocks, cuboids, levels, part, inner, grouping, targets, watch).Run();
}

}  // namespace vok::olap
