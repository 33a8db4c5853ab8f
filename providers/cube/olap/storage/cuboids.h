// Stored aggregates of a cube's facts: sums, least and largest values for combinations of members.
//
// A cuboid holds one block for every combination of the members of some levels; the block lists the
// leaves of the inner hierarchy, the largest one, that have facts there. Cuboids that differ only
// in the level of the time hierarchy form a set: a span of time is put together from whole years,
// quarters and months.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "providers/cube/olap/storage/blocks.h"
#include "providers/cube/olap/storage/bytes.h"
#include "providers/cube/olap/storage/leaf_levels.h"

namespace vok::olap {

struct HierarchyLevel {
  uint32_t hierarchy = 0;
  uint32_t level = 0;
};

struct Cuboid {
  std::vector<HierarchyLevel> outer;  ///< the time hierarchy last
  std::span<const uint32_t> blocks;   ///< for each combination; `kNoBlock`: it has no facts
  uint64_t cells = 0;                 ///< in all blocks
};

struct CuboidSet {
  std::vector<HierarchyLevel> outer;  ///< without the time hierarchy
  std::vector<Cuboid> cuboids;        ///< long periods first
};

inline constexpr uint32_t kNoTime = 0xFFFFFFFF;

/// Views into the opened file.
struct Cuboids {
  uint32_t inner = 0;                ///< the hierarchy whose leaves the blocks list
  uint32_t time = kNoTime;           ///< the hierarchy that the cuboids of a set differ in
  std::vector<uint32_t> columns;     ///< the value columns that the blocks hold
  std::vector<ValueFormat> formats;  ///< of `columns`
  std::vector<CuboidSet> sets;

  /// Where the blocks hold a value column; nothing: they do not.
  std::optional<std::size_t> PlaceOf(uint32_t value_column) const;
};

/// `formats` are those of all value columns. Failure "damaged" when the section does not fit.
Cuboids ReadCuboids(BlockStore& blocks, ByteReader section, std::span<const LeafLevels> levels,
                    std::span<const ValueFormat> formats);

}  // namespace vok::olap
