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
        different_count_(plan.values.size()) {
    if (plan.totals_of != kNoTime) {
      PeriodTotals none{0, std::vector<std::optional<ExactSum>>(plan.values.size(), ExactSum())};
      totals_.resize(hierarchies[plan.totals_of].members.LeafCount(), none);
    }
    if (options.kept == nullptr) return;
    totals_ = options.kept->totals;
    for (const PeriodTotals& totals : totals_) fact_count_ += totals.facts;
  }

  LoadedFacts Load() {
    ReadRuns();
    if (!leave_out_ && !bad_rows_.empty()) throw BadRows(std::move(bad_rows_));
    progress_("sorting the facts of " + cube_.name, kSorting, 0);
    NewFacts facts = spilled_ == nullptr ? FactsInMemory() : FactsOnDisk();
    FinishTotals(facts);
    return {fact_count_, std::move(facts), std::move(bad_rows_), std::move(totals_)};
  }

 private:
  using Ranges = std::vector<FactRange<Key>>;

  /// How to read the next run, and how far all are read then.
  struct Reading {
    std::function<FactRun<Key>()> read;
    double done = 0;
  };

  void ReadRuns() {
    if (options_.kept != nullptr) ReadKeptFacts(*options_.kept);
    const auto parts = OpenTable();
    AddRuns("reading " + ShownName(cube_.fact_table), [&]() -> Reading {
      const std::shared_ptr<TableReader> part = parts->Next();
      if (part == nullptr) return {};
      return {[this, part] { return ReadRun<Key>(plan_, hierarchies_, *part, most_bad_rows_); },
              parts->Done()};
    });
  }

  std::unique_ptr<TableParts> OpenTable() const {
    if (options_.gathered) return source_.Ask({cube_.fact_table, plan_.columns});
    std::vector<std::string> names;
    names.reserve(plan_.columns.size());
    for (const AskedColumn& column : plan_.columns) names.push_back(column.name);
    return source_.OpenParts(cube_.fact_table, names);
  }

  void ReadKeptFacts(const KeptFacts& kept) {
    constexpr uint64_t kRows = 65536;
    const uint64_t rows = kept.rows->rows();
    uint64_t next = 0;
    AddRuns("keeping facts of " + cube_.name, [&]() -> Reading {
      if (next >= rows) return {};
      const uint64_t first = std::exchange(next, std::min(next + kRows, rows));
      const auto count = static_cast<std::size_t>(next - first);
      return {[this, &kept, first, count] { return ReadKept<Key>(plan_, kept, first, count); },
              static_cast<double>(next) / static_cast<double>(rows)};
    });
  }

  void AddRuns(const std::string& what, const std::function<Reading()>& begin) {
    progress_(what, kReading, 0);
    RunInOrder(threads_, [&]() -> Working {
      const Reading reading = begin();
      if (!reading.read) return {};
      return [this, &what, reading]() -> Taking {
        const auto run = std::make_shared<FactRun<Key>>(reading.read());
        return [this, &what, run, done = reading.done] {
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
    fact_count_ += run.facts;
    if (fact_count_ > std::numeric_limits<uint32_t>::max()) {
      throw BadInput("table " + Quoted(ShownName(cube_.fact_table)),
                     "a cube holds at most 4294967295 facts");
    }
    for (std::size_t index = 0; index < run.values.size(); ++index) {
      if (plan_.values[index].aggregator == Aggregator::kDistinctCount) {
        RenumberDifferent(index, run.values[index]);
      }
    }
    AddTotals(run);
    in_memory_ += run.keys.capacity() * sizeof(Key);
    for (const ValueReader& value : run.values) in_memory_ += value.column().Bytes();
    runs_.push_back(std::move(run));
    if (options_.memory > 0 && in_memory_ > options_.memory) Spill();
  }

  /// Facts that stay in their file have theirs already.
  void AddTotals(const FactRun<Key>& run) {
    for (std::size_t leaf = 0; leaf < run.facts_of_leaf.size(); ++leaf) {
      PeriodTotals& totals = totals_[leaf];
      totals.facts += run.facts_of_leaf[leaf];
      for (std::size_t index = 0; index < totals.sums.size(); ++index) {
        const ValueColumn& column = run.values[index].column();
        auto& sum = totals.sums[index];
        if (column.kind() == NumberKind::kDouble) sum.reset();
        AddTo(sum, run.sums_of_leaf[index][leaf], column.scale());
      }
    }
  }

  /// Sums of a column are written in one way, whichever runs they came from.
  void FinishTotals(const NewFacts& facts) {
    for (PeriodTotals& totals : totals_) {
      for (std::size_t index = 0; index < totals.sums.size(); ++index) {
        const ValueFormat& format = facts.values[index].format;
        auto& sum = totals.sums[index];
        const bool is_sum = plan_.values[index].aggregator != Aggregator::kDistinctCount;
        if (!is_sum || format.kind == NumberKind::kDouble) sum.reset();
        AddTo(sum, 0, format.scale);
      }
    }
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
  std::vector<PeriodTotals> totals_;
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
  FactPlan plan = PlanFacts(cube, hierarchies, options.gathered);
  plan.totals_of = options.totals_of;
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
