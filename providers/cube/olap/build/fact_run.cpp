#include "providers/cube/olap/build/fact_run.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <numeric>
#include <optional>

#include "providers/cube/olap/storage/live_source.h"

namespace vok::olap {
namespace {

template <typename Key>
class RunReader {
 public:
  RunReader(const FactPlan& plan, const std::vector<LoadedHierarchy>& hierarchies,
            TableReader& part)
      : plan_(plan), hierarchies_(hierarchies), part_(part), comma_(part.HasDecimalComma()) {
    for (const FactPlan::Value& value : plan.values) {
      // What the server has counted is a number to be added.
      const bool is_counted = plan.count_place && value.aggregator == Aggregator::kCount;
      run_.values.emplace_back(is_counted ? Aggregator::kSum : value.aggregator);
    }
    for (const FactPlan::KeyPart& key : plan.keys) {
      if (key.hierarchy == plan.totals_of) totals_key_ = &key;
    }
    if (totals_key_ != nullptr) {
      run_.facts_of_leaf.resize(hierarchies[plan.totals_of].members.LeafCount());
    }
  }

  FactRun<Key> Read(std::size_t most_bad_rows) {
    while (run_.bad_rows.size() < most_bad_rows && ReadNext()) {
    }
    auto order = SortKeys(run_.keys, plan_.key_bits);
    if (kept_) {
      for (uint32_t& row : order) row = (*kept_)[row];
    }
    run_.keys.shrink_to_fit();
    for (ValueReader& value : run_.values) value.column().Reorder(order);
    if (totals_key_ != nullptr) AddSums();
    return std::move(run_);
  }

 private:
  bool ReadNext() {
    try {
      if (!part_.Next()) return false;
      ReadRow(part_.Fields());
    } catch (const BadRow& bad) {
      run_.bad_rows.push_back(bad.description());
    }
    return true;
  }

  void ReadRow(std::span<const Field> fields) {
    Key key = 0;
    for (const FactPlan::KeyPart& part : plan_.keys) {
      key |= Key{LeafOf(part, fields)} << part.shift;
    }
    for (std::size_t index = 0; index < plan_.values.size(); ++index) {
      const FactPlan::Value& value = plan_.values[index];
      const bool has_none = value.column.empty() && !plan_.count_place;
      const Field field = has_none ? Field{} : fields[value.place];
      if (Add(run_.values[index], value.aggregator, field)) continue;
      LeaveOutFrom(index);
      throw BadRow(BadInput(part_.Place(),
                            Quoted(field.text) + " in column " + Quoted(value.column) +
                                (comma_ ? " is not a number with a decimal comma, or is too large"
                                        : " is not a number (a point for decimals, no blanks), or "
                                          "is too large")));
    }
    if (kept_) kept_->push_back(value_rows_);
    ++value_rows_;
    run_.keys.push_back(key);
    const uint64_t facts = FactsOf(fields);
    run_.facts += facts;
    if (totals_key_ != nullptr) run_.facts_of_leaf[TotalsLeaf(key)] += facts;
  }

  uint64_t FactsOf(std::span<const Field> fields) const {
    if (!plan_.count_place) return 1;
    const std::string_view text = fields[*plan_.count_place].text;
    uint64_t facts = 0;
    std::from_chars(text.data(), text.data() + text.size(), facts);
    return facts;
  }

  std::size_t TotalsLeaf(Key key) const {
    return static_cast<std::size_t>(key >> totals_key_->shift &
                                    ((Key{1} << totals_key_->bits) - 1));
  }

  /// Of columns in the order of the keys.
  void AddSums() {
    std::vector<int64_t> values(run_.keys.size());
    for (const ValueReader& value : run_.values) {
      auto& sums = run_.sums_of_leaf.emplace_back(run_.facts_of_leaf.size());
      value.column().Copy(0, values);
      for (std::size_t row = 0; row < values.size(); ++row) {
        sums[TotalsLeaf(run_.keys[row])] += values[row];
      }
    }
  }

  bool Add(ValueReader& value, Aggregator aggregator, Field field) {
    const bool counts =
        aggregator == Aggregator::kCount || aggregator == Aggregator::kDistinctCount;
    if (!comma_ || counts || field.is_null) return value.Add(field);
    number_ = WithPoint(field.text);
    field.text = number_;
    return value.Add(field);
  }

  /// The values before this one have been added already: the row stays in the columns, and no key
  /// leads to it.
  void LeaveOutFrom(std::size_t index) {
    if (!kept_) {
      kept_.emplace(run_.keys.size());
      std::iota(kept_->begin(), kept_->end(), 0U);
    }
    for (; index < run_.values.size(); ++index) run_.values[index].column().AddNull();
    ++value_rows_;
  }

  uint32_t LeafOf(const FactPlan::KeyPart& part, std::span<const Field> fields) {
    const LoadedHierarchy& hierarchy = hierarchies_[part.hierarchy];
    if (!hierarchy.has_table) {
      JoinKeys(fields.subspan(part.first_column, hierarchy.fact_columns.size()), joined_);
      return hierarchy.leaves.Find(joined_);
    }
    const Field& field = fields[part.first_column];
    const uint32_t leaf = field.is_null ? KeyMap::kAbsent : hierarchy.leaves.Find(field.text);
    if (leaf == KeyMap::kAbsent) {
      throw BadRow(BadInput(part_.Place(), "the key " + Quoted(field.text) + " in column " +
                                               Quoted(hierarchy.fact_columns[0]) +
                                               " is not in the table of dimension " +
                                               Quoted(hierarchy.members.dimension_name)));
    }
    return leaf;
  }

  const FactPlan& plan_;
  const std::vector<LoadedHierarchy>& hierarchies_;
  TableReader& part_;
  bool comma_;
  const FactPlan::KeyPart* totals_key_ = nullptr;
  FactRun<Key> run_;
  uint32_t value_rows_ = 0;
  /// Where the values of each key are, once a row was left out after some of its values.
  std::optional<std::vector<uint32_t>> kept_;
  std::string joined_;
  std::string number_;
};

void PlanKeys(const std::vector<LoadedHierarchy>& hierarchies, FactPlan& plan) {
  for (const uint32_t index : SortOrder(hierarchies)) {
    const LoadedHierarchy& hierarchy = hierarchies[index];
    const auto bits = static_cast<uint32_t>(std::bit_width(hierarchy.members.LeafCount() - 1));
    plan.keys.push_back({index, 0, bits, plan.columns.size()});
    for (const std::string& column : hierarchy.fact_columns) plan.columns.push_back({column});
  }
  for (auto part = plan.keys.rbegin(); part != plan.keys.rend(); ++part) {
    part->shift = plan.key_bits;
    plan.key_bits += part->bits;
  }
}

Gathering ByTheServer(Aggregator aggregator) {
  if (const auto gathering = GatheringOf(aggregator)) return *gathering;
  throw Failure(failure_number::kUnspecified,
                "A count of different values cannot be put together by the server. Build without "
                "--group, or take the measure out of the schema");
}

/// Measures that aggregate one column in one way share their stored values.
void PlanValues(const CubeSchema& cube, bool gathered, FactPlan& plan) {
  for (const MeasureSchema& measure : cube.measures) {
    const auto same =
        std::find_if(plan.values.begin(), plan.values.end(), [&](const FactPlan::Value& value) {
          return value.column == measure.column && value.aggregator == measure.aggregator;
        });
    plan.value_of_measure.push_back(static_cast<uint32_t>(same - plan.values.begin()));
    if (same != plan.values.end()) continue;
    plan.values.push_back({measure.column, measure.aggregator, plan.columns.size()});
    const auto gathering = gathered ? ByTheServer(measure.aggregator) : Gathering::kNone;
    if (gathered || !measure.column.empty()) plan.columns.push_back({measure.column, gathering});
  }
  if (!gathered) return;
  plan.count_place = plan.columns.size();
  plan.columns.push_back({"", Gathering::kCount});
}

}  // namespace

FactPlan PlanFacts(const CubeSchema& cube, const std::vector<LoadedHierarchy>& hierarchies,
                   bool gathered) {
  FactPlan plan;
  PlanKeys(hierarchies, plan);
  PlanValues(cube, gathered, plan);
  return plan;
}

template <typename Key>
FactRun<Key> ReadRun(const FactPlan& plan, const std::vector<LoadedHierarchy>& hierarchies,
                     TableReader& part, std::size_t most_bad_rows) {
  return RunReader<Key>(plan, hierarchies, part).Read(most_bad_rows);
}

template FactRun<NarrowKey> ReadRun(const FactPlan& plan,
                                    const std::vector<LoadedHierarchy>& hierarchies,
                                    TableReader& part, std::size_t most_bad_rows);
template FactRun<WideKey> ReadRun(const FactPlan& plan,
                                  const std::vector<LoadedHierarchy>& hierarchies,
                                  TableReader& part, std::size_t most_bad_rows);

}  // namespace vok::olap
