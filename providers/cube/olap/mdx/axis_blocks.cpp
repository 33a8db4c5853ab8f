#include "providers/cube/olap/mdx/axis_blocks.h"

#include <algorithm>
#include <map>

#include "providers/cube/olap/mdx/distinct_tuples.h"

namespace vok::olap {
namespace {

using Key = MemberIds;
using BlockOfKey =
    std::map<Key, std::size_t, std::less<>, ColumnAllocator<std::pair<const Key, std::size_t>>>;

/// The members of the tuple without the varying one.
Key OtherMembers(const TupleSet& axis, std::size_t tuple, std::size_t varying_column) {
  Key key(axis.tuple(tuple), axis.tuple(tuple) + axis.arity());
  key.erase(key.begin() + static_cast<std::ptrdiff_t>(varying_column));
  return key;
}

bool SameOthers(const MemberId* a, const MemberId* b, std::size_t arity, std::size_t varying) {
  for (std::size_t i = 0; i < arity; ++i) {
    if (i != varying && a[i] != b[i]) return false;
  }
  return true;
}

/// Finds the block of a tuple: mostly that of the tuple before.
class BlockFinder {
 public:
  BlockFinder(const TupleSet& axis, std::size_t column, LongList<AxisBlock>& blocks)
      : axis_(axis), column_(column), blocks_(blocks) {}

  AxisBlock& Of(std::size_t tuple) {
    const MemberId* members = axis_.tuple(tuple);
    if (last_ < blocks_.size() &&
        SameOthers(axis_.tuple(blocks_[last_].tuple), members, axis_.arity(), column_)) {
      return blocks_[last_];
    }
    const auto [found, is_new] =
        block_of_.try_emplace(OtherMembers(axis_, tuple, column_), blocks_.size());
    if (is_new) blocks_.push_back({tuple, {}, nullptr});
    last_ = found->second;
    return blocks_[last_];
  }

 private:
  const TupleSet& axis_;
  std::size_t column_;
  LongList<AxisBlock>& blocks_;
  BlockOfKey block_of_;
  std::size_t last_ = SIZE_MAX;
};

/// Whether the axis has stored members of one hierarchy and nothing else: it is one block.
bool IsOneBlock(const TupleSet& axis, HierarchyId varying) {
  return axis.arity() == 1 && varying != kNoHierarchy && axis.size() > 1 &&
         std::none_of(axis.ids.begin(), axis.ids.end(), IsCalculated);
}

AxisBlock WholeAxis(const CubeView& cube, const TupleSet& axis) {
  AxisBlock block{0, {}, nullptr};
  block.varying = std::make_unique<Positions>(cube, axis.hierarchies[0], axis.ids);
  return block;
}

AxisBlock OnePosition(std::size_t tuple) {
  return {tuple, {static_cast<uint32_t>(tuple)}, nullptr};
}

}  // namespace

HierarchyId VaryingHierarchy(const QueryGuard& guard, const TupleSet& axis) {
  if (axis.arity() == 1)
    return axis.hierarchies[0] == kMeasures ? kNoHierarchy : axis.hierarchies[0];
  HierarchyId varying = kNoHierarchy;
  std::size_t most = 0;
  for (std::size_t i = 0; i < axis.arity(); ++i) {
    if (axis.hierarchies[i] == kMeasures) continue;
    const std::size_t count = MembersAt(guard, axis, i).size();
    if (varying != kNoHierarchy && count <= most) continue;
    varying = axis.hierarchies[i];
    most = count;
  }
  return varying;
}

LongList<AxisBlock> CutIntoBlocks(const CubeView& cube, const QueryGuard& guard,
                                  const TupleSet& axis) {
  guard.Check();
  const HierarchyId varying = VaryingHierarchy(guard, axis);
  const auto column = static_cast<std::size_t>(
      std::find(axis.hierarchies.begin(), axis.hierarchies.end(), varying) -
      axis.hierarchies.begin());
  LongList<AxisBlock> blocks;
  if (IsOneBlock(axis, varying)) {
    blocks.push_back(WholeAxis(cube, axis));
    return blocks;
  }
  BlockFinder finder(axis, column, blocks);
  const std::size_t count = axis.size();
  for (std::size_t i = 0; i < count; ++i) {
    guard.CheckAt(i);
    if (varying == kNoHierarchy || IsCalculated(axis.tuple(i)[column])) {
      blocks.push_back(OnePosition(i));
      continue;
    }
    finder.Of(i).rows.push_back(static_cast<uint32_t>(i));
  }
  for (AxisBlock& block : blocks) {
    if (block.rows.size() < 2) continue;
    MemberIds ids;
    ids.reserve(block.rows.size());
    for (const uint32_t row : block.rows) ids.push_back(axis.tuple(row)[column]);
    block.varying = std::make_unique<Positions>(cube, varying, std::move(ids));
  }
  return blocks;
}

}  // namespace vok::olap
