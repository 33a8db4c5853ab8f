#include "providers/cube/olap/build/aggregate_choice.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace vok::olap {
namespace {

constexpr double kWorthwhile = 2.0 / 3;
constexpr double kBudgetPerFact = 4;
constexpr double kLeastBudget = 8192;
/// Directory entry, table entry and padding of a block.
constexpr double kBlockBytes = 64;
/// With fewer facts for each block, reading the facts themselves is as fast.
constexpr double kLeastFactsPerBlock = 40;
constexpr std::size_t kMostCombinations = 4096;

using Outer = std::vector<HierarchyLevel>;

/// How many of `places` equal places `rows` facts are expected to hit.
double ExpectedCells(double places, double rows) {
  return -places * std::expm1(rows * std::log1p(-1 / std::max(places, 1 + 1e-9)));
}

/// Whether the levels of `fine` tell apart what those of `coarse` do.
bool Answers(const Outer& fine, const Outer& coarse) {
  return std::all_of(coarse.begin(), coarse.end(), [&](const HierarchyLevel& wanted) {
    return std::any_of(fine.begin(), fine.end(), [&](const HierarchyLevel& there) {
      return there.hierarchy == wanted.hierarchy && there.level >= wanted.level;
    });
  });
}

class Chooser {
 public:
  Chooser(const std::vector<NewHierarchy>& hierarchies, std::optional<uint32_t> time, uint64_t rows,
          double value_bits)
      : hierarchies_(hierarchies),
        time_(time),
        rows_(static_cast<double>(rows)),
        value_bits_(value_bits),
        budget_(std::max(kLeastBudget, kBudgetPerFact * rows_)) {}

  AggregateChoice Choose(const std::vector<uint32_t>& sort_order) {
    choice_.inner = sort_order.back();
    choice_.time = time_.value_or(kNoTime);
    for (const Outer& outer : Combinations(sort_order)) AddCandidates(outer);
    std::stable_sort(candidates_.begin(), candidates_.end(), [](const auto& a, const auto& b) {
      return std::tuple(b.time_level, b.outer.size(), a.cells) <
             std::tuple(a.time_level, a.outer.size(), b.cells);
    });
    for (const Candidate& candidate : candidates_) {
      const auto is_this = [&](const ChosenSet& set) { return Same(set.outer, candidate.outer); };
      if (std::any_of(choice_.sets.begin(), choice_.sets.end(), is_this)) continue;
      if (Take(candidate)) TakeLongerPeriods(candidate);
    }
    return std::move(choice_);
  }

 private:
  struct Candidate {
    Outer outer;
    uint32_t time_level = 0;
    double blocks = 0;
    double cells = 0;
  };

  std::vector<Outer> Combinations(const std::vector<uint32_t>& sort_order) const {
    std::vector<Outer> all{{}};
    for (const uint32_t hierarchy : sort_order) {
      if (hierarchy == choice_.inner || hierarchy == time_) continue;
      const auto& levels = hierarchies_[hierarchy].levels;
      if (all.size() * (levels.size() + 1) > kMostCombinations) break;
      const std::size_t count = all.size();
      for (uint32_t level = 0; level < levels.size(); ++level) {
        if (levels[level].members.size() == 1) continue;
        for (std::size_t index = 0; index < count; ++index) {
          all.push_back(all[index]);
          all.back().push_back({hierarchy, level});
        }
      }
    }
    return all;
  }

  void AddCandidates(const Outer& outer) {
    double blocks = 1;
    for (const auto& [hierarchy, level] : outer) blocks *= MemberCount(hierarchy, level);
    const auto times = time_ ? hierarchies_[*time_].levels.size() : 1;
    for (uint32_t level = 0; level < times; ++level) {
      const double all_blocks = time_ ? blocks * MemberCount(*time_, level) : blocks;
      const double places = all_blocks * hierarchies_[choice_.inner].LeafCount();
      candidates_.push_back({outer, level, all_blocks, ExpectedCells(places, rows_)});
    }
  }

  bool Take(const Candidate& candidate) {
    if (candidate.cells > kWorthwhile * LeastToAnswer(candidate)) return false;
    if (candidate.blocks * kLeastFactsPerBlock > rows_) return false;
    const double inner = hierarchies_[choice_.inner].LeafCount();
    // A slice is added up in memory.
    if (candidate.blocks / Slices(candidate.outer) * inner > rows_ + kLeastBudget) return false;
    const double sum_bits = value_bits_ + 2 * std::log2(1 + rows_ / candidate.cells);
    const double bytes =
        candidate.cells * sum_bits / 8 + candidate.blocks * (inner / 8 + kBlockBytes);
    if (bytes > budget_) return false;
    budget_ -= bytes;
    taken_.push_back(candidate);
    const bool is_new = choice_.sets.empty() || !Same(choice_.sets.back().outer, candidate.outer);
    if (is_new) choice_.sets.push_back({candidate.outer, {}});
    auto& levels = choice_.sets.back().time_levels;
    levels.insert(levels.begin(), candidate.time_level);
    return true;
  }

  void TakeLongerPeriods(const Candidate& first) {
    for (uint32_t level = first.time_level; level-- > 0;) {
      for (const Candidate& candidate : candidates_) {
        if (candidate.time_level == level && Same(candidate.outer, first.outer)) Take(candidate);
      }
    }
  }

  double LeastToAnswer(const Candidate& candidate) const {
    double least = rows_;
    for (const Candidate& other : taken_) {
      if (other.time_level >= candidate.time_level && Answers(other.outer, candidate.outer)) {
        least = std::min(least, other.cells);
      }
    }
    return least;
  }

  double Slices(const Outer& outer) const {
    double slices = 1;
    for (const auto& [hierarchy, level] : outer) slices *= MemberCount(hierarchy, level);
    return slices;
  }

  double MemberCount(uint32_t hierarchy, uint32_t level) const {
    return hierarchies_[hierarchy].levels[level].members.size();
  }

  static bool Same(const Outer& a, const Outer& b) {
    return a.size() == b.size() && Answers(a, b) && Answers(b, a);
  }

  const std::vector<NewHierarchy>& hierarchies_;
  std::optional<uint32_t> time_;
  double rows_;
  double value_bits_;
  double budget_;
  std::vector<Candidate> candidates_;
  std::vector<Candidate> taken_;
  AggregateChoice choice_;
};

}  // namespace

AggregateChoice ChooseAggregates(const std::vector<NewHierarchy>& hierarchies,
                                 const std::vector<uint32_t>& sort_order,
                                 std::optional<uint32_t> time, uint64_t rows, double value_bits) {
  return Chooser(hierarchies, time, rows, value_bits).Choose(sort_order);
}

}  // namespace vok::olap
