#include "providers/cube/olap/build/fact_loader.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

#include "platform/in_order.h"
#include "providers/cube/olap/build/fact_merger.h"
#include "providers/cube/olap/build/fact_run.h"

namespace vok::olap {
namespace {

constexpr std::size_t kToldBadRows = 20;
constexpr std::size_t kMostBadRows = 1'000'000;

template <typename Key>
class Loader {
 public:
  Loader(const TableSource& source, const CubeSchema& cube,
         const std::vector<LoadedHierarchy>& hierarchies, const FactPlan& plan, unsigned threads,
         bool leave_out_bad_rows, const Progress& progress)
      : source_(source),
        cube_(cube),
        hierarchies_(hierarchies),
        plan_(plan),
        threads_(threads),
        most_bad_rows_(leave_out_bad_rows ? kMostBadRows : kToldBadRows),
        leave_out_(leave_out_bad_rows),
        progress_(progress),
        different_(plan.values.size()),
        different_count_(plan.values.size()) {}

  LoadedFacts Load() {
    ReadRuns();
    if (!leave_out_ && !bad_rows_.empty()) throw BadRows(std::move(bad_rows_));
    progress_("sorting the facts of " + cube_.name, kSorting, 0);
    const auto formats = Formats();
    const auto ranges =
        std::make_shared<const Ranges>(MergeRuns(plan_, std::move(runs_), formats, threads_));
    return {fact_count_, FactsOf(ranges, formats), std::move(bad_rows_)};
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
    runs_.push_back(std::move(run));
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
  unsigned threads_;
  std::size_t most_bad_rows_;
  bool leave_out_;
  std::vector<std::string> bad_rows_;
  const Progress& progress_;
  uint64_t fact_count_ = 0;
  std::vector<FactRun<Key>> runs_;
  std::vector<KeyMap> different_;  // of each value that is a count of different ones
  std::vector<uint32_t> different_count_;
};

}  // namespace

BadRows::BadRows(std::vector<std::string> bad_rows)
    : Failure(failure_number::kUnspecified, bad_rows.front()), rows_(std::move(bad_rows)) {}

LoadedFacts LoadFacts(const TableSource& source, const CubeSchema& cube,
                      const std::vector<LoadedHierarchy>& hierarchies, unsigned threads,
                      bool leave_out_bad_rows, const Progress& progress) {
  constexpr uint32_t kWidest = 127;
  const FactPlan plan = PlanFacts(cube, hierarchies);
  if (plan.key_bits > kWidest) {
    throw BadInput(
        "cube " + Quoted(cube.name),
        "its hierarchies have too many members together: " + std::to_string(plan.key_bits) +
            " bits a key, at most " + std::to_string(kWidest) + " are possible");
  }
  if (plan.key_bits < 64) {
    return Loader<NarrowKey>(source, cube, hierarchies, plan, threads, leave_out_bad_rows, progress)
        .Load();
  }
  return Loader<WideKey>(source, cube, hierarchies, plan, threads, leave_out_bad_rows, progress)
      .Load();
}

}  // namespace vok::olap
