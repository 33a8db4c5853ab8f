#include "providers/cube/olap/build/fact_loader.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

#include "platform/in_order.h"
#include "providers/cube/olap/build/fact_merger.h"
#include "providers/cube/olap/build/fact_run.h"
#include "providers/cube/olap/build/spilled_runs.h"

namespace vok::olap {
namespace {

constexpr std::size_t kToldBadRows = 20;
constexpr std::size_t kMostBadRows = 1'000'000;

template <typename Key>
class Loader {
 public:
  Loader(const TableSource& source, const CubeSchema& cube,
         const std::vector<LoadedHierarchy>& hierarchies, const FactPlan& plan,
         const LoadOptions& options, const Progress& progress)
      : source_(source),
        cube_(cube),
        hierarchies_(hierarchies),
        plan_(plan),
        options_(options),
        threads_(options.threads),
        most_bad_rows_(options.leave_out_bad_rows ? kMostBadRows : kToldBadRows),
        leave_out_(options.leave_out_bad_rows),
        progress_(progress),
        different_(plan.values.size()),
        different_count_(plan.values.size()) {}

  LoadedFacts Load() {
    ReadRuns();
    if (!leave_out_ && !bad_rows_.empty()) throw BadRows(std::move(bad_rows_));
    progress_("sorting the facts of " + cube_.name, kSorting, 0);
    return {fact_count_, spilled_ == nullptr ? FactsInMemory() : FactsOnDisk(),
            std::move(bad_rows_)};
  }

 private:
  using Ranges = std::vector<FactRange<Key>>;

  void ReadRuns() {
    const auto parts = source_.OpenParts(cube_.fact_table, plan_.columns);
    const std::string what = "reading " + ShownName(cube_.fact_table);
    progress_(what, kReading, 0);
    RunInOrder(threads_, [&]() -> Working {
      const std::shared_ptr<TableReader> part = parts->Next();
      if (part == nullptr) return {};
      return [this, &what, part, done = parts->Done()]() -> Taking {
        const auto run = std::make_shared<FactRun<Key>>(
            ReadRun<Key>(plan_, hierarchies_, *part, most_bad_rows_));
        return [this, &what, run, done] {
          AddRun(std::move(*run));
          progress_(what, kReading, done);
        };
      };
    });
  }

  void AddRun(FactRun<Key> run) {
    bad_rows_.insert(bad_rows_.end(), run.bad_rows.begin(), run.bad_rows.end());
    if (bad_rows_.size() >= most_bad_rows_) {
      bad_rows_.resize(kToldBadRows);
      throw BadRows(std::move(bad_rows_));
    }
    fact_count_ += run.keys.size();
    if (fact_count_ > std::numeric_limits<uint32_t>::max()) {
      throw BadInput("table " + Quoted(ShownName(cube_.fact_table)),
                     "a cube holds at most 4294967295 facts");
    }
    for (std::size_t index = 0; index < run.values.size(); ++index) {
      if (plan_.values[index].aggregator == Aggregator::kDistinctCount) {
        RenumberDifferent(index, run.values[index]);
      }
    }
    in_memory_ += run.keys.capacity() * sizeof(Key);
    for (const ValueReader& value : run.values) in_memory_ += value.column().Bytes();
    runs_.push_back(std::move(run));
    if (options_.memory > 0 && in_memory_ > options_.memory) Spill();
  }

  void Spill() {
    if (spilled_ == nullptr) {
      spilled_ = std::make_unique<SpilledRuns<Key>>(plan_, options_.open_scratch(), threads_);
    }
    spilled_->Add(std::exchange(runs_, {}));
    in_memory_ = 0;
  }

  /// Each run numbers the different texts for itself.
  void RenumberDifferent(std::size_t index, ValueReader& value) {
    std::vector<uint32_t> numbers;
    for (const std::string& text : value.TakeDifferent().KeysByNumber()) {
      const auto known = different_[index].Insert(text, different_count_[index]);
      numbers.push_back(known ? *known : different_count_[index]++);
    }
    value.column().Renumber(numbers);
  }

  std::vector<ValueFormat> Formats() {
    std::vector<ValueFormat> formats;
    for (std::size_t index = 0; index < plan_.values.size(); ++index) {
      std::vector<ValueColumn*> columns;
      for (FactRun<Key>& run : runs_) columns.push_back(&run.values[index].column());
      formats.push_back(MakeAlike(columns, threads_));
    }
    return formats;
  }

  NewFacts FactsInMemory() {
    const auto formats = Formats();
    const auto ranges = std::make_shared<Ranges>();
    uint64_t rows = 0;
    MergeRuns<Key>(plan_, RunsInMemory<Key>(std::move(runs_)), CanJoin(plan_, formats), threads_,
                   [&](FactRange<Key> range) {
                     range.first_row = rows;
                     rows += range.keys.size();
                     ranges->push_back(std::move(range));
                   });
    return FactsOf(ranges, formats);
  }

  /// The columns of the spool are those that are read of it: leaves, then numbers and validity.
  NewFacts FactsOnDisk() {
    Spill();
    const auto formats = spilled_->Formats();
    const auto file = std::make_shared<SpoolFile>();
    file->file = options_.open_scratch();
    const auto spool =
        std::make_shared<ColumnSpool>(file, plan_.keys.size() + 2 * plan_.values.size());
    MergeRuns<Key>(plan_, *spilled_, CanJoin(plan_, formats), threads_,
                   [&](const FactRange<Key>& range) { spool->Append(ColumnsOf(range)); });
    spool->Finish();
    spilled_.reset();
    NewFacts facts;
    facts.rows = spool->rows();
    facts.value_of_measure = plan_.value_of_measure;
    std::size_t next = 0;
    const auto column = [&] {
      return [spool, place = next++](uint64_t first, std::span<int64_t> out) {
        spool->Read(place, first, out);
      };
    };
    for (const FactPlan::KeyPart& part : plan_.keys) {
      facts.keys.push_back({part.hierarchy, column()});
    }
    for (const ValueFormat& format : formats) {
      const auto numbers = column();
      facts.values.push_back({format, numbers, column()});
    }
    return facts;
  }

  std::vector<std::vector<int64_t>> ColumnsOf(const FactRange<Key>& range) const {
    std::vector<std::vector<int64_t>> columns;
    for (const FactPlan::KeyPart& part : plan_.keys) {
      const Key mask = (Key{1} << part.bits) - 1;
      auto& leaves = columns.emplace_back();
      leaves.reserve(range.keys.size());
      for (const Key key : range.keys) {
        leaves.push_back(static_cast<int64_t>(key >> part.shift & mask));
      }
    }
    for (const ValueColumn& value : range.values) {
      value.Copy(0, columns.emplace_back(value.size()));
      value.CopyValidity(0, columns.emplace_back(value.size()));
    }
    return columns;
  }

  NewFacts FactsOf(const std::shared_ptr<const Ranges>& ranges,
                   const std::vector<ValueFormat>& formats) const {
    NewFacts facts;
    facts.rows = ranges->back().first_row + ranges->back().keys.size();
    facts.value_of_measure = plan_.value_of_measure;
    for (const FactPlan::KeyPart& part : plan_.keys) {
      const Key mask = (Key{1} << part.bits) - 1;
      facts.keys.push_back(
          {part.hierarchy,
           InRanges(ranges, [mask, shift = part.shift](const FactRange<Key>& range, uint64_t first,
                                                       std::span<int64_t> leaves) {
             for (int64_t& leaf : leaves) {
               leaf = static_cast<int64_t>(range.keys[first++] >> shift & mask);
             }
           })});
    }
    for (std::size_t index = 0; index < formats.size(); ++index) {
      const auto values = [index](const auto& range, uint64_t first, std::span<int64_t> out) {
        range.values[index].Copy(first, out);
      };
      const auto validity = [index](const auto& range, uint64_t first, std::span<int64_t> out) {
        range.values[index].CopyValidity(first, out);
      };
      facts.values.push_back(
          {formats[index], InRanges(ranges, values), InRanges(ranges, validity)});
    }
    return facts;
  }

  /// `copy` fills a span from rows of one range.
  template <typename Copy>
  static ColumnSource InRanges(const std::shared_ptr<const Ranges>& ranges, const Copy& copy) {
    return [ranges, copy](uint64_t first, std::span<int64_t> out) {
      auto range = std::upper_bound(ranges->begin(), ranges->end(), first,
                                    [](uint64_t row, const FactRange<Key>& each) {
                                      return row < each.first_row;
                                    }) -
                   1;
      for (; !out.empty(); ++range) {
        const uint64_t skipped = first - range->first_row;
        const auto count = std::min<uint64_t>(out.size(), range->keys.size() - skipped);
        copy(*range, skipped, out.first(count));
        out = out.subspan(count);
        first += count;
      }
    };
  }

  const TableSource& source_;
  const CubeSchema& cube_;
  const std::vector<LoadedHierarchy>& hierarchies_;
  const FactPlan& plan_;
  const LoadOptions& options_;
  unsigned threads_;
  std::size_t most_bad_rows_;
  bool leave_out_;
  std::vector<std::string> bad_rows_;
  const Progress& progress_;
  uint64_t fact_count_ = 0;
  std::vector<FactRun<Key>> runs_;
  uint64_t in_memory_ = 0;  // bytes of them
  std::unique_ptr<SpilledRuns<Key>> spilled_;
  std::vector<KeyMap> different_;  // of each value that is a count of different ones
  std::vector<uint32_t> different_count_;
};

}  // namespace

BadRows::BadRows(std::vector<std::string> bad_rows)
    : Failure(failure_number::kUnspecified, bad_rows.front()), rows_(std::move(bad_rows)) {}

LoadedFacts LoadFacts(const TableSource& source, const CubeSchema& cube,
                      const std::vector<LoadedHierarchy>& hierarchies, const LoadOptions& options,
                      const Progress& progress) {
  constexpr uint32_t kWidest = 127;
  const FactPlan plan = PlanFacts(cube, hierarchies);
  if (plan.key_bits > kWidest) {
    throw BadInput(
        "cube " + Quoted(cube.name),
        "its hierarchies have too many members together: " + std::to_string(plan.key_bits) +
            " bits a key, at most " + std::to_string(kWidest) + " are possible");
  }
  if (plan.key_bits < 64) {
    return Loader<NarrowKey>(source, cube, hierarchies, plan, options, progress).Load();
  }
  return Loader<WideKey>(source, cube, hierarchies, plan, options, progress).Load();
}

}  // namespace vok::olap
