#include "providers/cube/olap/storage/read_plan.h"

#include <algorithm>
#include <utility>

namespace vok::olap {
namespace {

/// What a cell of a cuboid costs is 1. A fact's leaves are unpacked and tested besides, and facts
/// of one slice lie scattered.
constexpr double kFactCost = 3;
constexpr double kBlockCost = 40;

uint64_t CountOf(const std::vector<IdRange>& ranges) {
  uint64_t count = 0;
  for (const IdRange& range : ranges) count += range.size();
  return count;
}

class Planner {
 public:
  Planner(const Cuboids& cuboids, std::span<const LeafLevels> levels, const LeafSlice& slice,
          const Grouping& grouping, uint64_t rows)
      : cuboids_(cuboids), levels_(levels), slice_(slice), grouping_(grouping), rows_(rows) {}

  ReadPlan Best() const {
    ReadPlan best{{}, slice_};
    double least = Cost(best);
    for (const CuboidSet& set : cuboids_.sets) {
      std::optional<ReadPlan> plan = PlanFor(set);
      const double cost = plan ? Cost(*plan) : least;
      if (cost >= least) continue;
      best = std::move(*plan);
      least = cost;
    }
    return best;
  }

 private:
  std::optional<ReadPlan> PlanFor(const CuboidSet& set) const {
    const auto members = MembersOf(set);
    if (!members) return std::nullopt;
    ReadPlan plan;
    if (cuboids_.time == kNoTime) {
      plan.parts.push_back({&set.cuboids.front(), *members});
      return plan;
    }
    std::vector<IdRange> rest = slice_[cuboids_.time];
    if (rest.empty()) rest.push_back({0, levels_[cuboids_.time].LeafCount()});
    for (const Cuboid& cuboid : set.cuboids) {
      if (!Tells(cuboid.outer.back())) continue;
      CuboidPart part{&cuboid, *members};
      part.members.push_back(TakeWholeMembers(cuboid.outer.back().level, rest));
      if (!part.members.back().empty()) plan.parts.push_back(std::move(part));
    }
    if (!rest.empty()) {
      plan.facts = slice_;
      (*plan.facts)[cuboids_.time] = std::move(rest);
    }
    return plan;
  }

  /// The members of the set's levels that make up the slice; nothing where they do not.
  std::optional<std::vector<std::vector<IdRange>>> MembersOf(const CuboidSet& set) const {
    std::vector<bool> is_outer(levels_.size());
    std::vector<std::vector<IdRange>> members;
    for (const HierarchyLevel& outer : set.outer) {
      is_outer[outer.hierarchy] = true;
      if (!Tells(outer)) return std::nullopt;
      auto& ranges = members.emplace_back();
      for (const IdRange& leaves : slice_[outer.hierarchy]) {
        const auto range = levels_[outer.hierarchy].MembersOf(outer.level, leaves);
        if (!range) return std::nullopt;
        ranges.push_back(*range);
      }
      if (ranges.empty()) ranges.push_back({0, levels_[outer.hierarchy].MemberCount(outer.level)});
    }
    for (uint32_t hierarchy = 0; hierarchy < levels_.size(); ++hierarchy) {
      if (hierarchy == cuboids_.inner || hierarchy == cuboids_.time || is_outer[hierarchy]) {
        continue;
      }
      const bool grouped = grouping_.hierarchy() == hierarchy && grouping_.count() > 1;
      if (grouped || !slice_[hierarchy].empty()) return std::nullopt;
    }
    return members;
  }

  /// Whether each member of the level falls into one group.
  bool Tells(const HierarchyLevel& outer) const {
    return grouping_.hierarchy() != outer.hierarchy ||
           levels_[outer.hierarchy].MemberCount(outer.level) >= grouping_.count();
  }

  /// Cuts the members whose leaves all are in `leaves` out of it.
  std::vector<IdRange> TakeWholeMembers(uint32_t level, std::vector<IdRange>& leaves) const {
    const LeafLevels& time = levels_[cuboids_.time];
    std::vector<IdRange> taken;
    std::vector<IdRange> rest;
    for (const IdRange& range : leaves) {
      const IdRange members = time.MembersWithin(level, range);
      if (members.size() == 0) {
        rest.push_back(range);
        continue;
      }
      taken.push_back(members);
      const IdRange covered{time.FirstLeaf(level, members.begin),
                            time.EndLeaf(level, members.end - 1)};
      if (range.begin < covered.begin) rest.push_back({range.begin, covered.begin});
      if (covered.end < range.end) rest.push_back({covered.end, range.end});
    }
    leaves = std::move(rest);
    return taken;
  }

  double Cost(const ReadPlan& plan) const {
    double cost = 0;
    for (const CuboidPart& part : plan.parts) {
      double blocks = 1;
      for (const auto& ranges : part.members) blocks *= static_cast<double>(CountOf(ranges));
      const double share = blocks / static_cast<double>(part.cuboid->blocks.size());
      cost += blocks * kBlockCost +
              share * static_cast<double>(part.cuboid->cells) * Share(slice_, cuboids_.inner);
    }
    if (!plan.facts) return cost;
    double facts = static_cast<double>(rows_) * kFactCost;
    for (uint32_t hierarchy = 0; hierarchy < levels_.size(); ++hierarchy) {
      // Facts are sorted by the inner hierarchy last, so that it spares little.
      if (hierarchy != cuboids_.inner) facts *= Share(*plan.facts, hierarchy);
    }
    return cost + facts;
  }

  double Share(const LeafSlice& slice, uint32_t hierarchy) const {
    if (slice[hierarchy].empty()) return 1;
    return static_cast<double>(CountOf(slice[hierarchy])) / levels_[hierarchy].LeafCount();
  }

  const Cuboids& cuboids_;
  std::span<const LeafLevels> levels_;
  const LeafSlice& slice_;
  const Grouping& grouping_;
  uint64_t rows_;
};

}  // namespace

Grouping::Grouping(const LeafLevels& levels, uint32_t hierarchy, uint32_t level)
    : hierarchy_(hierarchy),
      count_(levels.MemberCount(level)),
      slots_(std::size_t{levels.LeafCount()} + 1),
      leaf_count_(levels.LeafCount()) {
  if (count_ == leaf_count_) return;
  group_of_leaf_.assign(slots_, static_cast<uint32_t>(count_));
  for (uint32_t group = 0; group < count_; ++group) {
    const uint32_t end =
        group + 1 < count_ ? levels.FirstLeaf(level, group + 1) : levels.LeafCount();
    std::fill(group_of_leaf_.begin() + levels.FirstLeaf(level, group), group_of_leaf_.begin() + end,
              group);
  }
}

void Grouping::Map(std::span<uint32_t> leaves) const {
  for (uint32_t& leaf : leaves) leaf = std::min(leaf, leaf_count_);
  if (group_of_leaf_.empty()) return;
  for (uint32_t& leaf : leaves) leaf = group_of_leaf_[leaf];
}

ReadPlan PlanRead(const Cuboids& cuboids, std::span<const LeafLevels> levels,
                  const LeafSlice& slice, const Grouping& grouping, uint64_t rows) {
  return Planner(cuboids, levels, slice, grouping, rows).Best();
}

}  // namespace vok::olap
