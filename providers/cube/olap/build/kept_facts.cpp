#include "providers/cube/olap/build/kept_facts.h"

#include <algorithm>
#include <span>
#include <utility>

namespace vok::olap {
namespace {

/// Rows of the file from `first` on, those among them that stay, and one column of them.
class KeptPart {
 public:
  KeptPart(const KeptFacts& kept, uint64_t first, std::size_t count)
      : kept_(kept), first_(first), column_(count) {
    const auto& leaves = kept.leaves[kept.time];
    kept.rows->ReadLeaves(kept.time, first, column_);
    for (uint32_t row = 0; row < count; ++row) {
      if (leaves[static_cast<std::size_t>(column_[row])] != KeptFacts::kReadAnew) {
        stays_.push_back(row);
      }
    }
  }

  std::size_t size() const { return stays_.size(); }

  /// As they are in the file.
  std::span<const int64_t> Leaves(uint32_t hierarchy) {
    kept_.rows->ReadLeaves(hierarchy, first_, column_);
    return Chosen();
  }
  ValueColumn Values(std::size_t index, const ValueFormat& format) {
    kept_.rows->ReadValues(index, first_, column_);
    const auto chosen = Chosen();
    const std::vector<int64_t> values(chosen.begin(), chosen.end());
    if (!format.has_nulls) return {format.kind, format.scale, values, {}};
    kept_.rows->ReadValidity(index, first_, column_);
    return {format.kind, format.scale, values, Chosen()};
  }

 private:
  /// Of the column that was read last, in place.
  std::span<const int64_t> Chosen() {
    auto to = column_.begin();
    for (const uint32_t row : stays_) *to++ = column_[row];
    return std::span(column_).first(stays_.size());
  }

  const KeptFacts& kept_;
  uint64_t first_;
  std::vector<int64_t> column_;
  std::vector<uint32_t> stays_;
};

}  // namespace

template <typename Key>
FactRun<Key> ReadKept(const FactPlan& plan, const KeptFacts& kept, uint64_t first,
                      std::size_t count) {
  KeptPart part(kept, first, count);
  FactRun<Key> run;
  run.keys.resize(part.size());
  for (const FactPlan::KeyPart& key : plan.keys) {
    const auto& leaves = kept.leaves[key.hierarchy];
    auto to = run.keys.begin();
    for (const int64_t old : part.Leaves(key.hierarchy)) {
      const uint32_t leaf = leaves[static_cast<std::size_t>(old)];
      if (leaf == KeptFacts::kUnknown) {
        throw kept.unknown(key.hierarchy, static_cast<uint32_t>(old));
      }
      *to++ |= Key{leaf} << key.shift;
    }
  }
  const auto formats = kept.rows->Formats();
  for (std::size_t index = 0; index < plan.values.size(); ++index) {
    run.values.emplace_back(plan.values[index].aggregator, part.Values(index, formats[index]));
  }
  if (std::is_sorted(run.keys.begin(), run.keys.end())) return run;
  const auto order = SortKeys(run.keys, plan.key_bits);
  for (ValueReader& value : run.values) value.column().Reorder(order);
  return run;
}

std::vector<bool> UsedLeaves(const KeptFacts& kept, uint32_t hierarchy) {
  std::vector<bool> used(kept.leaves[hierarchy].size());
  constexpr uint64_t kRows = 65536;
  for (uint64_t first = 0; first < kept.rows->rows(); first += kRows) {
    const auto count = std::min(kRows, kept.rows->rows() - first);
    KeptPart part(kept, first, static_cast<std::size_t>(count));
    for (const int64_t leaf : part.Leaves(hierarchy)) used[static_cast<std::size_t>(leaf)] = true;
  }
  return used;
}

template FactRun<NarrowKey> ReadKept(const FactPlan& plan, const KeptFacts& kept, uint64_t first,
                                     std::size_t count);
template FactRun<WideKey> ReadKept(const FactPlan& plan, const KeptFacts& kept, uint64_t first,
                                   std::size_t count);

}  // namespace vok::olap
