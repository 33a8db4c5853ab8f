#include "providers/cube/olap/build/fact_merger.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "platform/in_order.h"

namespace vok::olap {
namespace {

/// So many facts of a range can be sorted in the memory that is close to a processor.
constexpr std::size_t kRangeRows = 65536;

bool CanJoin(Aggregator aggregator, const ValueFormat& format) {
  if (aggregator == Aggregator::kMin || aggregator == Aggregator::kMax) return true;
  return aggregator != Aggregator::kDistinctCount && format.kind == NumberKind::kDecimal &&
         format.is_narrow;
}

/// The least keys of all ranges but the first, each larger than the one before.
template <typename Key>
std::vector<Key> Limits(std::vector<Key> sample) {
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
std::size_t PlaceOf(Key key, const FactRun<Key>& run) {
  return static_cast<std::size_t>(std::lower_bound(run.keys.begin(), run.keys.end(), key) -
                                  run.keys.begin());
}

template <typename Key>
class Merger {
 public:
  Merger(const FactPlan& plan, const FactRuns<Key>& runs, bool join)
      : plan_(plan), runs_(runs), join_(join) {}

  void Merge(unsigned threads, const std::function<void(FactRange<Key>)>& take) const {
    const auto limits = Limits(runs_.Sample());
    std::size_t next = 0;
    RunInOrder(threads, [&]() -> Working {
      if (next > limits.size()) return {};
      const Key* begin = next == 0 ? nullptr : &limits[next - 1];
      const Key* end = next == limits.size() ? nullptr : &limits[next];
      ++next;
      return [this, &take, begin, end]() -> Taking {
        const auto range = std::make_shared<FactRange<Key>>(MergeRange(begin, end));
        return [&take, range] { take(std::move(*range)); };
      };
    });
  }

 private:
  /// Of the keys from `begin` on, and less than `end`; null: no limit.
  FactRange<Key> MergeRange(const Key* begin, const Key* end) const {
    FactRange<Key> range;
    range.values.resize(plan_.values.size());
    runs_.Append(begin, end, range);
    const auto order = SortKeys(range.keys, plan_.key_bits);
    for (ValueColumn& column : range.values) column.Reorder(order);
    if (join_) Join(range);
    range.keys.shrink_to_fit();
    return range;
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
  const FactRuns<Key>& runs_;
  const bool join_;
};

}  // namespace

template <typename Key>
std::vector<Key> RunsInMemory<Key>::Sample() const {
  std::vector<Key> sample;
  for (const FactRun<Key>& run : runs_) {
    for (std::size_t row = 0; row < run.keys.size(); row += kRowsOfSample) {
      sample.push_back(run.keys[row]);
    }
  }
  return sample;
}

template <typename Key>
void RunsInMemory<Key>::Append(const Key* begin, const Key* end, FactRange<Key>& range) const {
  for (const FactRun<Key>& run : runs_) {
    const std::size_t first = begin == nullptr ? 0 : PlaceOf(*begin, run);
    const std::size_t last = end == nullptr ? run.keys.size() : PlaceOf(*end, run);
    range.keys.insert(range.keys.end(), run.keys.begin() + static_cast<std::ptrdiff_t>(first),
                      run.keys.begin() + static_cast<std::ptrdiff_t>(last));
    for (std::size_t index = 0; index < range.values.size(); ++index) {
      range.values[index].Append(run.values[index].column(), first, last);
    }
  }
}

bool CanJoin(const FactPlan& plan, const std::vector<ValueFormat>& formats) {
  bool join = true;
  for (std::size_t index = 0; index < formats.size(); ++index) {
    join = join && CanJoin(plan.values[index].aggregator, formats[index]);
  }
  return join;
}

template <typename Key>
void MergeRuns(const FactPlan& plan, const FactRuns<Key>& runs, bool join, unsigned threads,
               const std::function<void(FactRange<Key>)>& take) {
  Merger<Key>(plan, runs, join).Merge(threads, take);
}

template class RunsInMemory<NarrowKey>;
template class RunsInMemory<WideKey>;
template void MergeRuns(const FactPlan& plan, const FactRuns<NarrowKey>& runs, bool join,
                        unsigned threads, const std::function<void(FactRange<NarrowKey>)>& take);
template void MergeRuns(const FactPlan& plan, const FactRuns<WideKey>& runs, bool join,
                        unsigned threads, const std::function<void(FactRange<WideKey>)>& take);

}  // namespace vok::olap
