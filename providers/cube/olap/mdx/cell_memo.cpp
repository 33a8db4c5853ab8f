#include "providers/cube/olap/mdx/cell_memo.h"

#include <algorithm>
#include <utility>

namespace vok::olap {
namespace {

constexpr std::size_t kMaxKeptValues = std::size_t{8} << 20;
/// A place takes as much memory as so many values.
constexpr std::size_t kPlaceValues = 32;

uint64_t Mixed(uint64_t hash, uint64_t value) {
  hash = (hash ^ value) * 0xD6E8FEB86659FD93;
  return hash ^ hash >> 32;
}

/// Of a few of the members of a long block: places are compared whole.
uint64_t HashOf(const Block& block) {
  uint64_t hash = block.Varying();
  for (const MemberId member : block.context.members) hash = Mixed(hash, member);
  for (const LeafRanges* region : block.context.regions) {
    hash = Mixed(hash, reinterpret_cast<std::uintptr_t>(region));
  }
  if (block.positions == nullptr) return hash;
  const MemberIds& ids = block.positions->ids;
  const std::size_t step = ids.size() / 16 + 1;
  for (std::size_t i = 0; i < ids.size(); i += step) hash = Mixed(hash, ids[i]);
  return Mixed(hash, ids.size());
}

}  // namespace

bool CellMemo::IsAt(const Kept& kept, const Block& block) {
  return kept.varying == block.Varying() && kept.members == block.context.members &&
         kept.regions == block.context.regions &&
         (block.positions == nullptr || kept.ids == block.positions->ids);
}

const CellMemo::Computed* CellMemo::Find(const Block& block) const {
  const auto [begin, end] = kept_.equal_range(HashOf(block));
  const auto found =
      std::find_if(begin, end, [&](const auto& each) { return IsAt(each.second, block); });
  return found == end ? nullptr : &found->second.computed;
}

void CellMemo::Keep(const Block& block, Computed computed) {
  if (kept_values_ > kMaxKeptValues) Clear();
  kept_values_ += kPlaceValues + block.size() + computed.cells.size();
  kept_.emplace(HashOf(block), Kept{block.context.members, block.context.regions, block.Varying(),
                                    block.positions == nullptr ? MemberIds() : block.positions->ids,
                                    std::move(computed)});
}

void CellMemo::Clear() {
  kept_.clear();
  kept_values_ = 0;
}

}  // namespace vok::olap
