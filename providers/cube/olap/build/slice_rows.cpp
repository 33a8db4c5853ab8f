#include "providers/cube/olap/build/slice_rows.h"

#include <algorithm>
#include <memory>
#include <span>
#include <utility>

#include "platform/in_order.h"

namespace vok::olap {
namespace {

constexpr uint64_t kRowsOfStep = 1024;
constexpr uint64_t kRowsOfWork = 64 * kRowsOfStep;

/// Finds the slices of some facts, run by run.
class RunFinder {
 public:
  using Run = std::pair<uint64_t, RowRange>;  // the slice first

  RunFinder(const std::vector<HierarchyLevel>& outer, const NewCube& cube, const NewFacts& facts) {
    for (const auto& [hierarchy, level] : outer) {
      digits_.push_back({LeavesOf(facts, hierarchy),
                         MembersOfLeaves(cube.hierarchies[hierarchy], level),
                         cube.hierarchies[hierarchy].levels[level].members.size()});
    }
  }

  std::vector<Run> Find(RowRange rows) const {
    std::vector<Run> runs;
    std::vector<uint64_t> slices;
    for (uint64_t first = rows.begin; first < rows.end; first += slices.size()) {
      slices.assign(std::min(kRowsOfStep, rows.end - first), 0);
      for (const Digit& digit : digits_) AddDigit(digit, first, slices);
      for (std::size_t row = 0; row < slices.size(); ++row) {
        if (runs.empty() || runs.back().first != slices[row]) {
          runs.push_back({slices[row], {first + row, first + row}});
        }
        runs.back().second.end = first + row + 1;
      }
    }
    return runs;
  }

 private:
  struct Digit {
    const ColumnSource& leaves;
    std::vector<uint32_t> member_of_leaf;
    uint64_t radix;
  };

  static void AddDigit(const Digit& digit, uint64_t first, std::vector<uint64_t>& slices) {
    std::vector<int64_t> leaves(slices.size());
    digit.leaves(first, leaves);
    for (std::size_t row = 0; row < slices.size(); ++row) {
      slices[row] =
          slices[row] * digit.radix + digit.member_of_leaf[static_cast<std::size_t>(leaves[row])];
    }
  }

  std::vector<Digit> digits_;
};

}  // namespace

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

const ColumnSource& LeavesOf(const NewFacts& facts, uint32_t hierarchy) {
  return std::find_if(facts.keys.begin(), facts.keys.end(),
                      [&](const NewKeyColumn& key) { return key.hierarchy == hierarchy; })
      ->leaves;
}

std::map<uint64_t, std::vector<RowRange>> FindSlices(const std::vector<HierarchyLevel>& outer,
                                                     const NewCube& cube, const NewFacts& facts,
                                                     unsigned threads) {
  const RunFinder finder(outer, cube, facts);
  std::map<uint64_t, std::vector<RowRange>> found;
  uint64_t next = 0;
  RunInOrder(threads, [&]() -> Working {
    if (next >= facts.rows) return {};
    const RowRange rows{next, std::min(facts.rows, next + kRowsOfWork)};
    next = rows.end;
    return [&finder, &found, rows]() -> Taking {
      const auto runs = std::make_shared<const std::vector<RunFinder::Run>>(finder.Find(rows));
      return [&found, runs] {
        for (const auto& [slice, run] : *runs) {
          auto& of_slice = found[slice];
          if (!of_slice.empty() && of_slice.back().end == run.begin) {
            of_slice.back().end = run.end;
          } else {
            of_slice.push_back(run);
          }
        }
      };
    };
  });
  return found;
}

}  // namespace vok::olap
