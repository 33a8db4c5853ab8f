#include "providers/olap/mdx/reads.h"

#include <optional>

namespace vok::olap {
namespace {

constexpr std::size_t kMaxKeptValues = std::size_t{16} << 20;

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

Reads::Slice* Reads::Find(const Block& block, const Positions::Part* part) {
  FactQuery query;
  Key key = {0xFFFFFFFF, 0xFFFFFFFF};
  if (part != nullptr && part->rows.size() > 1) {
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
  if (slice.query.leaves.empty()) slice.query = std::move(query);
  return &slice;
}

void Reads::Announce(const Block& block) {
  const uint32_t measure = block.context.members[kMeasures];
  const auto announce = [&](const Positions::Part* part) {
    Slice* slice = Find(block, part);
    if (slice == nullptr || slice->columns.contains(measure)) return;
    if (slice->wanted.empty()) announced_.push_back(slice);
    slice->wanted.insert(measure);
  };
  if (measure == kNoMember) return;
  if (block.positions == nullptr) return announce(nullptr);
  for (const Positions::Part& part : block.positions->parts) announce(&part);
}

void Reads::ReadAnnounced() {
  for (Slice* slice : announced_) Store(*slice);
  announced_.clear();
}

void Reads::Store(Slice& slice) {
  if (slice.wanted.empty()) return;
  slice.query.measures.assign(slice.wanted.begin(), slice.wanted.end());
  std::vector<FactColumn> columns = cube_.facts().Read(slice.query);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    kept_values_ += columns[i].values.size();
    slice.columns.insert_or_assign(slice.query.measures[i], std::move(columns[i]));
  }
  slice.wanted.clear();
}

const FactColumn& Reads::Get(Slice& slice, uint32_t measure) {
  if (!slice.columns.contains(measure)) {
    slice.wanted.insert(measure);
    Store(slice);
  }
  return slice.columns.at(measure);
}

Column Reads::Read(const Block& block) {
  Column result(block.size());
  const uint32_t measure = block.context.members[kMeasures];
  if (measure == kNoMember) return result;
  const auto take = [&](std::size_t row, const FactColumn& from, std::size_t index) {
    if (from.present[index] != 0) result.SetNumber(row, from.values[index]);
  };
  if (block.positions == nullptr) {
    if (Slice* slice = Find(block, nullptr)) take(0, Get(*slice, measure), 0);
    return result;
  }
  for (const Positions::Part& part : block.positions->parts) {
    Slice* slice = Find(block, &part);
    if (slice == nullptr) continue;
    const FactColumn& column = Get(*slice, measure);
    if (!slice->query.group) {
      take(part.rows[0], column, 0);
      continue;
    }
    const uint32_t first = cube_.LevelMembers(block.Varying(), part.level).begin;
    for (const uint32_t row : part.rows) take(row, column, block.positions->ids[row] - first);
  }
  return result;
}

void Reads::Trim() {
  if (kept_values_ <= kMaxKeptValues) return;
  slices_.clear();
  announced_.clear();
  kept_values_ = 0;
}

}  // namespace vok::olap
