#include "providers/cube/olap/build/spilled_runs.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "providers/cube/olap/build/decimal.h"

namespace vok::olap {
namespace {

/// Columns of a spool that a key takes; then come, for each value, its numbers and their validity.
template <typename Key>
constexpr std::size_t kKeyColumns = sizeof(Key) / sizeof(uint64_t);

constexpr uint32_t kWordBits = 64;

template <typename Key>
std::vector<std::vector<int64_t>> ColumnsOf(const FactRange<Key>& range) {
  std::vector<std::vector<int64_t>> columns(kKeyColumns<Key>);
  for (std::size_t word = 0; word < columns.size(); ++word) {
    for (const Key key : range.keys) {
      columns[word].push_back(
          static_cast<int64_t>(static_cast<uint64_t>(key >> (word * (kWordBits - 1)) >> word)));
    }
  }
  for (const ValueColumn& column : range.values) {
    column.Copy(0, columns.emplace_back(column.size()));
    column.CopyValidity(0, columns.emplace_back(column.size()));
  }
  return columns;
}

/// Whether values of that size can have that many decimal places more.
bool Fits(uint64_t largest, int places) {
  auto value = static_cast<int64_t>(largest);
  return places == 0 ||
         (largest <= std::numeric_limits<int64_t>::max() && ShiftDecimal(value, places));
}

}  // namespace

template <typename Key>
SpilledRuns<Key>::SpilledRuns(const FactPlan& plan, std::unique_ptr<ScratchFile> file,
                              unsigned threads)
    : plan_(plan), file_(std::make_shared<SpoolFile>()), threads_(threads) {
  file_->file = std::move(file);
}

template <typename Key>
void SpilledRuns<Key>::Add(std::vector<FactRun<Key>> runs) {
  Run run{ColumnSpool(file_, kKeyColumns<Key> + 2 * plan_.values.size()), {}, {}};
  for (std::size_t index = 0; index < plan_.values.size(); ++index) {
    std::vector<ValueColumn*> columns;
    columns.reserve(runs.size());
    for (FactRun<Key>& each : runs) columns.push_back(&each.values[index].column());
    run.values.push_back({MakeAlike(columns, threads_)});
  }
  MergeRuns<Key>(plan_, RunsInMemory<Key>(std::move(runs)), false, threads_,
                 [&](const FactRange<Key>& range) { AppendRange(range, run); });
  run.rows.Finish();
  runs_.push_back(std::move(run));
}

template <typename Key>
void SpilledRuns<Key>::AppendRange(const FactRange<Key>& range, Run& run) const {
  const uint64_t before = run.rows.rows();
  for (std::size_t row = (kRowsOfSample - before % kRowsOfSample) % kRowsOfSample;
       row < range.keys.size(); row += kRowsOfSample) {
    run.sample.push_back(range.keys[row]);
  }
  for (std::size_t index = 0; index < range.values.size(); ++index) {
    run.values[index].magnitude += range.values[index].Magnitude();
    run.values[index].largest = std::max(run.values[index].largest, range.values[index].Largest());
  }
  run.rows.Append(ColumnsOf(range));
}

template <typename Key>
std::vector<ValueFormat> SpilledRuns<Key>::Formats() {
  for (std::size_t index = 0; index < plan_.values.size(); ++index) {
    ValueFormat format;
    for (const Run& run : runs_) {
      const ValueFormat& own = run.values[index].format;
      format.scale = std::max(format.scale, own.scale);
      format.has_nulls = format.has_nulls || own.has_nulls;
      if (own.kind == NumberKind::kDouble) format.kind = own.kind;
    }
    Int128 total = 0;
    for (const Run& run : runs_) {
      const Values& values = run.values[index];
      const int places = format.scale - values.format.scale;
      if (!Fits(values.largest, places)) format.kind = NumberKind::kDouble;
      Int128 magnitude = values.magnitude;
      for (int place = 0; place < places && format.kind == NumberKind::kDecimal; ++place) {
        magnitude = (magnitude << 3) + (magnitude << 1);  // ten times
      }
      total += magnitude;
    }
    const bool is_double = format.kind == NumberKind::kDouble;
    format.is_narrow = is_double || total <= std::numeric_limits<int64_t>::max();
    if (is_double) format.scale = 0;
    formats_.push_back(format);
  }
  return formats_;
}

template <typename Key>
std::vector<Key> SpilledRuns<Key>::Sample() const {
  std::vector<Key> sample;
  for (const Run& run : runs_) sample.insert(sample.end(), run.sample.begin(), run.sample.end());
  return sample;
}

template <typename Key>
void SpilledRuns<Key>::Append(const Key* begin, const Key* end, FactRange<Key>& range) const {
  for (const Run& run : runs_) {
    const uint64_t first = begin == nullptr ? 0 : PlaceOf(*begin, run);
    const uint64_t last = end == nullptr ? run.rows.rows() : PlaceOf(*end, run);
    const auto keys = KeysOf(run, first, last);
    range.keys.insert(range.keys.end(), keys.begin(), keys.end());
    for (std::size_t index = 0; index < range.values.size(); ++index) {
      const ValueColumn column = ColumnOf(run, index, first, last);
      range.values[index].Append(column, 0, column.size());
    }
  }
}

template <typename Key>
uint64_t SpilledRuns<Key>::PlaceOf(Key key, const Run& run) const {
  const auto after = std::lower_bound(run.sample.begin(), run.sample.end(), key);
  if (after == run.sample.begin()) return 0;
  const uint64_t first = static_cast<uint64_t>(after - run.sample.begin() - 1) * kRowsOfSample;
  const auto keys = KeysOf(run, first, std::min(first + kRowsOfSample, run.rows.rows()));
  return first +
         static_cast<uint64_t>(std::lower_bound(keys.begin(), keys.end(), key) - keys.begin());
}

template <typename Key>
std::vector<Key> SpilledRuns<Key>::KeysOf(const Run& run, uint64_t first, uint64_t last) const {
  std::vector<Key> keys(static_cast<std::size_t>(last - first));
  std::vector<int64_t> words(keys.size());
  for (std::size_t word = kKeyColumns<Key>; word-- > 0;) {
    run.rows.Read(word, first, words);
    for (std::size_t row = 0; row < keys.size(); ++row) {
      const auto bits = static_cast<uint64_t>(words[row]);
      for (const auto half : {static_cast<uint32_t>(bits >> 32), static_cast<uint32_t>(bits)}) {
        keys[row] = keys[row] << 32;
        keys[row] |= static_cast<Key>(int64_t{half});
      }
    }
  }
  return keys;
}

template <typename Key>
ValueColumn SpilledRuns<Key>::ColumnOf(const Run& run, std::size_t index, uint64_t first,
                                       uint64_t last) const {
  const ValueFormat& own = run.values[index].format;
  std::vector<int64_t> numbers(static_cast<std::size_t>(last - first));
  std::vector<int64_t> valid(own.has_nulls ? numbers.size() : 0);
  const std::size_t place = kKeyColumns<Key> + 2 * index;
  run.rows.Read(place, first, numbers);
  if (own.has_nulls) run.rows.Read(place + 1, first, valid);
  ValueColumn column(own.kind, own.scale, numbers, valid);
  if (formats_[index].kind == NumberKind::kDouble) {
    column.TurnIntoDoubles();
  } else {
    column.RaiseScale(formats_[index].scale);
  }
  return column;
}

template class SpilledRuns<NarrowKey>;
template class SpilledRuns<WideKey>;

}  // namespace vok::olap
