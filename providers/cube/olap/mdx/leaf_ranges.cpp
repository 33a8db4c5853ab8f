#include "providers/cube/olap/mdx/leaf_ranges.h"

#include <algorithm>

namespace vok::olap {
namespace {

bool BeginsBefore(const IdRange& a, const IdRange& b) { return a.begin < b.begin; }

void Ascend(std::vector<IdRange>& ranges) {
  std::erase_if(ranges, [](const IdRange& range) { return range.size() == 0; });
  if (!std::is_sorted(ranges.begin(), ranges.end(), BeginsBefore)) {
    std::sort(ranges.begin(), ranges.end(), BeginsBefore);
  }
}

}  // namespace

void Append(IdRange range, std::vector<IdRange>& ranges) {
  if (!ranges.empty() && ranges.back().end == range.begin) {
    ranges.back().end = range.end;
  } else {
    ranges.push_back(range);
  }
}

std::vector<IdRange> Merged(std::vector<IdRange> ranges) {
  Ascend(ranges);
  std::size_t last = 0;
  for (std::size_t i = 1; i < ranges.size(); ++i) {
    if (ranges[i].begin <= ranges[last].end) {
      ranges[last].end = std::max(ranges[last].end, ranges[i].end);
    } else {
      ranges[++last] = ranges[i];
    }
  }
  if (!ranges.empty()) ranges.resize(last + 1);
  return ranges;
}

bool Disjoint(std::vector<IdRange> ranges) {
  Ascend(ranges);
  for (std::size_t i = 1; i < ranges.size(); ++i) {
    if (ranges[i].begin < ranges[i - 1].end) return false;
  }
  return true;
}

bool CoversAll(const std::vector<IdRange>& merged, uint32_t leaf_count) {
  return merged.size() == 1 && merged[0] == IdRange{0, leaf_count};
}

}  // namespace vok::olap
