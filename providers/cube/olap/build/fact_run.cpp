#include "providers/cube/olap/build/fact_run.h"

#include <algorithm>
#include <bit>

namespace vok::olap {
namespace {

template <typename Key>
class RunReader {
 public:
  RunReader(const FactPlan& plan, const std::vector<LoadedHierarchy>& hierarchies,
            TableReader& part)
      : plan_(plan), hierarchies_(hierarchies), part_(part) {
    for (const FactPlan::Value& value : plan.values) run_.values.emplace_back(value.aggregator);
  }

  FactRun<Key> Read() {
    while (part_.Next()) ReadRow(part_.Fields());
    const auto order = SortKeys(run_.keys, plan_.key_bits);
    run_.keys.shrink_to_fit();
    for (ValueReader& value : run_.values) value.column().Reorder(order);
    return std::move(run_);
  }

 private:
  void ReadRow(std::span<const Field> fields) {
    Key key = 0;
    for (const FactPlan::KeyPart& part : plan_.keys) {
      key |= Key{LeafOf(part, fields)} << part.shift;
    }
    run_.keys.push_back(key);
    for (std::size_t index = 0; index < plan_.values.size(); ++index) {
      const FactPlan::Value& value = plan_.values[index];
      const Field field = value.column.empty() ? Field{} : fields[value.place];
      if (run_.values[index].Add(field)) continue;
      throw BadInput(part_.Place(), Quoted(field.text) + " in column " + Quoted(value.column) +
                                        " is no number (a point for decimals, no blanks), or " +
                                        "one too large");
    }
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
      throw BadInput(part_.Place(), "the key " + Quoted(field.text) + " in column " +
                                        Quoted(hierarchy.fact_columns[0]) +
                                        " is not in the table of dimension " +
                                        Quoted(hierarchy.members.dimension_name));
    }
    return leaf;
  }

  const FactPlan& plan_;
  const std::vector<LoadedHierarchy>& hierarchies_;
  TableReader& part_;
  FactRun<Key> run_;
  std::string joined_;
};

void PlanKeys(const std::vector<LoadedHierarchy>& hierarchies, FactPlan& plan) {
  for (const uint32_t index : SortOrder(hierarchies)) {
    const LoadedHierarchy& hierarchy = hierarchies[index];
    const auto bits = static_cast<uint32_t>(std::bit_width(hierarchy.members.LeafCount() - 1));
    plan.keys.push_back({index, 0, bits, plan.columns.size()});
    plan.columns.insert(plan.columns.end(), hierarchy.fact_columns.begin(),
                        hierarchy.fact_columns.end());
  }
  for (auto part = plan.keys.rbegin(); part != plan.keys.rend(); ++part) {
    part->shift = plan.key_bits;
    plan.key_bits += part->bits;
  }
}

/// Measures that aggregate one column in one way share their stored values.
void PlanValues(const CubeSchema& cube, FactPlan& plan) {
  for (const MeasureSchema& measure : cube.measures) {
    const auto same =
        std::find_if(plan.values.begin(), plan.values.end(), [&](const FactPlan::Value& value) {
          return value.column == measure.column && value.aggregator == measure.aggregator;
        });
    plan.value_of_measure.push_back(static_cast<uint32_t>(same - plan.values.begin()));
    if (same != plan.values.end()) continue;
    plan.values.push_back({measure.column, measure.aggregator, plan.columns.size()});
    if (!measure.column.empty()) plan.columns.push_back(measure.column);
  }
}

}  // namespace

FactPlan PlanFacts(const CubeSchema& cube, const std::vector<LoadedHierarchy>& hierarchies) {
  FactPlan plan;
  PlanKeys(hierarchies, plan);
  PlanValues(cube, plan);
  return plan;
}

template <typename Key>
FactRun<Key> ReadRun(const FactPlan& plan, const std::vector<LoadedHierarchy>& hierarchies,
                     TableReader& part) {
  return RunReader<Key>(plan, hierarchies, part).Read();
}

template FactRun<NarrowKey> ReadRun(const FactPlan& plan,
                                    const std::vector<LoadedHierarchy>& hierarchies,
                                    TableReader& part);
template FactRun<WideKey> ReadRun(const FactPlan& plan,
                                  const std::vector<LoadedHierarchy>& hierarchies,
                                  TableReader& part);

}  // namespace vok::olap
