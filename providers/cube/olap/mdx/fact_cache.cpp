#include "providers/cube/olap/mdx/fact_cache.h"

#include <optional>
#include <utility>

namespace vok::olap {
namespace {

constexpr std::size_t kMaxKeptValues = std::size_t{16} << 20;
/// A slice takes as much memory as so many values.
constexpr std::size_t kSliceValues = 64;

/// The leaves of a hierarchy that take part; nothing: all of them.
std::optional<LeafRanges> Leaves(const CubeView& cube, const Block& block,
                                 const Positions::Part* part, HierarchyId h) {
  if (part != nullptr && h == block.Varying()) {
    if (part->leaves.empty()) return std::nullopt;
    return part->leaves;
  }
  if (block.context.regions[h] != nullptr) return *block.context.regions[h];
  const Hierarchy& hierarchy = cube.Stored(h);
  const MemberId member = block.context.members[h];
  if (member == kNoMember) return LeafRanges{};
  const IdRange leaves = hierarchy.Leaves(member);
  if (leaves == IdRange{0, hierarchy.LeafCount()}) return std::nullopt;
  if (leaves.size() == 0) return LeafRanges{};
  return LeafRanges{leaves};
}

}  // namespace

FactCache::Slice* FactCache::Find(const Block& block, const Positions::Part* part) {
  FactQuery query;
  Key key = {0xFFFFFFFF, 0xFFFFFFFF};
  if (part != nullptr && (part->is_level ? block.size() : part->rows.size()) > 1) {
    query.group = FactQuery::Group{block.Varying() - 1, part->level};
    key = {block.Varying(), part->level};
  }
  for (HierarchyId h = 1; h < cube_.HierarchyCount(); ++h) {
    std::optional<LeafRanges> leaves = Leaves(cube_, block, part, h);
    if (leaves && leaves->empty()) return nullptr;
    query.leaves.push_back(leaves ? std::move(*leaves) : LeafRanges{});
    key.push_back(static_cast<uint32_t>(query.leaves.back().size()));
    for (const IdRange& range : query.leaves.back()) {
      key.push_back(range.begin);
      key.push_back(range.end);
    }
  }
  Slice& slice = slices_[std::move(key)];
  if (slice.query.leaves.empty()) {
    slice.query = std::move(query);
    slice.query.check = [&guard = guard_] { guard.Check(); };
    kept_values_ += kSliceValues;
  }
  return &slice;
}

void FactCache::Announce(const Block& block) {
  const uint32_t measure = block.context.members[kMeasures];
  const auto announce = [&](const Positions::Part* part) {
    Slice* slice = Find(block, part);
    if (slice == nullptr) return;
    ++slice->columns[measure].announced;
  };
  if (measure == kNoMember) return;
  if (block.positions == nullptr) return announce(nullptr);
  for (const Positions::Part& part : block.positions->parts) announce(&part);
}

void FactCache::Store(Slice& slice) {
  std::vector<Slice*> asked = {&slice};
  if (cube_.facts().AnswersTogether()) {
    for (auto& [key, other] : slices_) {
      if (&other != &slice) asked.push_back(&other);
    }
  }
  std::vector<const FactQuery*> queries;
  std::erase_if(asked, [&queries](Slice* each) {
    std::vector<uint32_t> measures;
    for (const auto& [measure, kept] : each->columns) {
      if (!kept.is_read) measures.push_back(measure);
    }
    if (measures.empty()) return true;
    each->query.measures = std::move(measures);
    queries.push_back(&each->query);
    return false;
  });
  if (queries.empty()) return;
  auto answers = cube_.facts().ReadAll(queries);
  for (std::size_t index = 0; index < asked.size(); ++index) {
    for (std::size_t i = 0; i < answers[index].size(); ++i) {
      Kept& kept = asked[index]->columns[asked[index]->query.measures[i]];
      kept_values_ += answers[index][i].numbers.size();
      kept.column = std::move(answers[index][i]);
      kept.is_read = true;
    }
  }
}

FactColumn& FactCache::Get(Slice& slice, uint32_t measure) {
  Kept& kept = slice.columns[measure];
  if (!kept.is_read) Store(slice);
  return kept.column;
}

void FactCache::Release(Slice& slice, uint32_t measure) {
  const auto kept = slice.columns.find(measure);
  if (kept->second.announced == 0 || --kept->second.announced > 0) return;
  kept_values_ -= kept->second.column.numbers.size();
  slice.columns.erase(kept);
}

Column FactCache::Whole(Slice& slice, uint32_t measure) {
  FactColumn& column = Get(slice, measure);
  const bool is_last = slice.columns[measure].announced == 1;
  if (is_last) kept_values_ -= column.numbers.size();
  Column whole = is_last ? Column(std::move(column)) : Column(column);
  Release(slice, measure);
  return whole;
}

Column FactCache::Read(const Block& block) {
  const uint32_t measure = block.context.members[kMeasures];
  if (measure == kNoMember) return Column(block.size());
  if (block.positions == nullptr) {
    Slice* slice = Find(block, nullptr);
    return slice == nullptr ? Column(1) : Column(Get(*slice, measure));
  }
  Column result;
  for (const Positions::Part& part : block.positions->parts) {
    Slice* slice = Find(block, &part);
    if (slice == nullptr) continue;
    if (part.is_level) return Whole(*slice, measure);
    const bool grouped = slice->query.group.has_value();
    const FactColumn& column = Get(*slice, measure);
    if (result.size() == 0) result = Column(block.size());
    result.overflows = result.overflows || column.overflows;
    const uint32_t first = cube_.LevelMembers(block.Varying(), part.level).begin;
    for (const uint32_t row : part.rows) {
      const std::size_t from = grouped ? block.positions->ids[row] - first : 0;
      result.numbers[row] = column.numbers[from];
      result.states[row] = column.states[from];
    }
    Release(*slice, measure);
  }
  return result.size() == 0 ? Column(block.size()) : result;
}

void FactCache::Trim() {
  if (kept_values_ <= kMaxKeptValues) return;
  slices_.clear();
  kept_values_ = 0;
}

}  // namespace vok::olap
