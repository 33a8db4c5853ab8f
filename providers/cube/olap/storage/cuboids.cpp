#include "providers/cube/olap/storage/cuboids.h"

#include <algorithm>

namespace vok::olap {
namespace {

class Reader {
 public:
  Reader(BlockStore& blocks, ByteReader section, std::span<const LeafLevels> levels,
         std::span<const ValueFormat> formats)
      : blocks_(blocks), section_(section), levels_(levels), formats_(formats) {}

  Cuboids Read() {
    cuboids_.inner = section_.Get<uint32_t>();
    cuboids_.time = section_.Get<uint32_t>();
    Require(cuboids_.inner < levels_.size() && cuboids_.time != cuboids_.inner);
    Require(cuboids_.time < levels_.size() || cuboids_.time == kNoTime);
    cuboids_.columns.resize(section_.GetCount(sizeof(uint32_t)));
    for (uint32_t& column : cuboids_.columns) {
      column = section_.Get<uint32_t>();
      Require(column < formats_.size());
      cuboids_.formats.push_back(formats_[column]);
    }
    cuboids_.sets.resize(section_.GetCount(2 * sizeof(uint32_t)));
    for (CuboidSet& set : cuboids_.sets) ReadSet(set);
    return std::move(cuboids_);
  }

 private:
  void ReadSet(CuboidSet& set) {
    std::vector<bool> seen(levels_.size());
    for (auto count = section_.GetCount(sizeof(HierarchyLevel)); count > 0; --count) {
      const auto outer = section_.Get<HierarchyLevel>();
      Require(outer.hierarchy < levels_.size() && !seen[outer.hierarchy]);
      Require(outer.hierarchy != cuboids_.inner && outer.hierarchy != cuboids_.time);
      Require(outer.level < levels_[outer.hierarchy].LevelCount());
      seen[outer.hierarchy] = true;
      set.outer.push_back(outer);
    }
    set.cuboids.resize(section_.GetCount(sizeof(uint32_t)));
    Require(cuboids_.time != kNoTime || set.cuboids.size() == 1);
    for (Cuboid& cuboid : set.cuboids) {
      cuboid.outer = set.outer;
      if (cuboids_.time != kNoTime) {
        cuboid.outer.push_back({cuboids_.time, section_.Get<uint32_t>()});
        Require(cuboid.outer.back().level < levels_[cuboids_.time].LevelCount());
      }
      cuboid.cells = section_.Get<uint64_t>();
      ReadTable(cuboid);
    }
  }

  void ReadTable(Cuboid& cuboid) {
    const auto block = section_.Get<uint32_t>();
    Require(block < blocks_.count());
    uint64_t combinations = 1;
    for (const HierarchyLevel& outer : cuboid.outer) {
      combinations *= levels_[outer.hierarchy].MemberCount(outer.level);
      Require(combinations < kNoBlock);
    }
    ByteReader table(blocks_.Keep(block), blocks_.file_name());
    cuboid.blocks = table.GetAll<uint32_t>(combinations);
    Require(std::all_of(cuboid.blocks.begin(), cuboid.blocks.end(), [this](uint32_t each) {
      return each == kNoBlock || each < blocks_.count();
    }));
  }

  void Require(bool condition) const {
    if (!condition) {
      throw DamagedCubeFile(blocks_.file_name(), "the description of its aggregates is not valid");
    }
  }

  BlockStore& blocks_;
  ByteReader section_;
  std::span<const LeafLevels> levels_;
  std::span<const ValueFormat> formats_;
  Cuboids cuboids_;
};

}  // namespace

std::optional<std::size_t> Cuboids::PlaceOf(uint32_t value_column) const {
  const auto found = std::find(columns.begin(), columns.end(), value_column);
  if (found == columns.end()) return std::nullopt;
  return static_cast<std::size_t>(found - columns.begin());
}

Cuboids ReadCuboids(BlockStore& blocks, ByteReader section, std::span<const LeafLevels> levels,
                    std::span<const ValueFormat> formats) {
  return Reader(blocks, section, levels, formats).Read();
}

}  // namespace vok::olap
