#include "providers/cube/olap/build/fact_merger.h"

#include <algorithm>
#include <utility>

#include "platform/in_order.h"

namespace vok::olap {
namespace {

/// So many facts of a range can be sorted in the memory that is close to a processor.
constexpr std::size_t kRangeRows = 65536;
constexpr std::size_t kRowsOfSample = 256;

bool CanJoin(Aggregator aggregator, const ValueFormat& format) {
  if (aggregator == Aggregator::kMin || aggregator == Aggregator::kMax) return true;
  return aggregator != Aggregator::kDistinctCount && format.kind == NumberKind::kDecimal &&
         format.is_narrow;
}

/// The least keys of all ranges but the first, each larger than the one before.
template <typename Key>
std::vector<Key> Limits(const std::vector<FactRun<Key>>& runs) {
  std::vector<Key> sample;
  for (const FactRun<Key>& run : runs) {
    for (std::size_t row = 0; row < run.keys.size(); row += kRowsOfSample) {
      sample.push_back(run.keys[row]);
    }
  }
  std::sort(sample.begin(), sample.end());
  std::vector<Key> limits;
  constexpr std::size_t kSamplesOfRange = kRangeRows / kRowsOfSample;
  for (std::size_t at = kSamplesOfRange; at < sample.size(); at += kSamplesOfRange) {
    if (sample[at] != (limits.empty() ? sample.front() : limits.back())) {
      limits.push_back(sample[at]);
    }
  }
  return limits;
}

template <typename Key>
class Merger {
 public:
  Merger(const FactPlan& plan, std::vector<FactRun<Key>> runs, bool join)
      : plan_(plan), runs_(std::move(runs)), join_(join) {}

  std::vector<FactRange<Key>> Merge(unsigned threads) const {
    const auto limits = Limits(runs_);
    std::vector<FactRange<Key>> ranges(limits.size() + 1);
    InParallel(threads, ranges.size(), [&](std::size_t index) {
      ranges[index] = MergeRange(index == 0 ? nullptr : &limits[index - 1],
                                 index == limits.size() ? nullptr : &limits[index]);
    });
    uint64_t rows = 0;
    for (FactRange<Key>& range : ranges) {
      range.first_row = rows;
      rows += range.keys.size();
    }
    return ranges;
  }

 private:
  /// Of the keys from `begin` on, and less than `end`; null: no limit.
  FactRange<Key> MergeRange(const Key* begin, const Key* end) const {
    FactRange<Key> range;
    range.values.resize(plan_.values.size());
    for (const FactRun<Key>& run : runs_) {
      const std::size_t first = begin == nullptr ? 0 : PlaceOf(*begin, run);
      const std::size_t last = end == nullptr ? run.keys.size() : PlaceOf(*end, run);
      range.keys.insert(range.keys.end(), run.keys.begin() + static_cast<std::ptrdiff_t>(first),
                        run.keys.begin() + static_cast<std::ptrdiff_t>(last));
      for (std::size_t index = 0; index < range.values.size(); ++index) {
        range.values[index].Append(run.values[index].column(), first, last);
      }
    }
    const auto order = SortKeys(range.keys, plan_.key_bits);
    for (ValueColumn& column : range.values) column.Reorder(order);
    if (join_) Join(range);
    range.keys.shrink_to_fit();
    return range;
  }

  static std::size_t PlaceOf(Key key, const FactRun<Key>& run) {
    return static_cast<std::size_t>(std::lower_bound(run.keys.begin(), run.keys.end(), key) -
                                    run.keys.begin());
  }

  void Join(FactRange<Key>& range) const {
    std::vector<Key>& keys = range.keys;
    if (std::adjacent_find(keys.begin(), keys.end()) == keys.end()) return;
    std::vector<uint32_t> starts;
    for (std::size_t row = 0; row < keys.size(); ++row) {
      if (row > 0 && keys[row] == keys[row - 1]) continue;
      starts.push_back(static_cast<uint32_t>(row));
    }
    starts.push_back(static_cast<uint32_t>(keys.size()));
    for (std::size_t index = 0; index < range.values.size(); ++index) {
      range.values[index].Join(starts, plan_.values[index].aggregator);
    }
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  }

  const FactPlan& plan_;
  const std::vector<FactRun<Key>> runs_;
  const bool join_;
};

}  // namespace

template <typename Key>
std::vector<FactRange<Key>> MergeRuns(const FactPlan& plan, std::vector<FactRun<Key>> runs,
                                      const std::vector<ValueFormat>& formats, unsigned threads) {
  bool join = true;
  for (std::size_t index = 0; index < formats.size(); ++index) {
    join = join && CanJoin(plan.values[index].aggregator, formats[index]);
  }
  return Merger<Key>(plan, std::move(runs), join).Merge(threads);
}

template std::vector<FactRange<NarrowKey>> MergeRuns(const FactPlan& plan,
                                                     std::vector<FactRun<NarrowKey>> runs,
                                                     const std::vector<ValueFormat>& formats,
                                                     unsigned threads);
template std::vector<FactRange<WideKey>> MergeRuns(const FactPlan& plan,
                                                   std::vector<FactRun<WideKey>> runs,
                                                   const std::vector<ValueFormat>& formats,
                                                   unsigned threads);

}  // namespace vok::olap
