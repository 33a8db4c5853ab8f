#include "providers/cube/olap/storage/cube_file.h"

#include <cmath>
#include <optional>
#include <utility>

#include "providers/cube/olap/storage/blocks.h"
#include "providers/cube/olap/storage/bytes.h"
#include "providers/cube/olap/storage/fact_reader.h"
#include "providers/cube/olap/storage/hierarchy_block.h"

namespace vok::olap {
namespace {

/// A text's length field: the least that a record with a text in it takes.
constexpr std::size_t kLeastText = sizeof(uint32_t);

class StructureReader {
 public:
  StructureReader(const BlockStore& blocks, ByteReader section) : blocks_(blocks), in_(section) {}

  CubeModel Read() {
    CubeModel model;
    model.name = in_.GetText();
    model.caption = in_.GetText();
    model.fact_count = in_.Get<uint64_t>();
    model.default_measure = in_.Get<uint32_t>();
    model.measures.resize(in_.GetCount(3 * kLeastText));
    for (Measure& measure : model.measures) measure = ReadMeasure();
    Require(model.default_measure < model.measures.size());
    auto count = in_.GetCount(2 * kLeastText);
    Require(count <= kMostHierarchies);
    for (; count > 0; --count) {
      model.hierarchies.push_back(ReadHierarchy());
    }
    model.dimensions.resize(in_.GetCount(2 * kLeastText));
    for (Dimension& dimension : model.dimensions) {
      dimension = ReadDimension(model.hierarchies.size());
    }
    return model;
  }

 private:
  Measure ReadMeasure() {
    Measure measure;
    measure.name = in_.GetText();
    measure.caption = in_.GetText();
    measure.format_string = in_.GetText();
    const auto aggregator = in_.Get<uint8_t>();
    Require(aggregator <= static_cast<uint8_t>(Aggregator::kDistinctCount));
    measure.aggregator = static_cast<Aggregator>(aggregator);
    return measure;
  }

  Hierarchy ReadHierarchy() {
    std::string dimension_name = in_.GetText();
    std::string name = in_.GetText();
    const bool has_all = ReadFlag();
    std::vector<Level> levels(in_.GetCount(kLeastText));
    uint32_t next = 0;
    for (Level& level : levels) {
      level = ReadLevel(next);
      next = level.members.end;
    }
    Require(!levels.empty() && levels.size() <= kMostLevels);
    Require(!has_all || (levels.size() > 1 && levels[0].members.size() == 1));
    const auto block = in_.Get<uint32_t>();
    Require(block < blocks_.count());
    StoredMembers members = ReadHierarchyBlock(blocks_, block, levels);
    return Hierarchy(std::move(dimension_name), std::move(name), has_all, std::move(levels),
                     std::move(members.leaf_levels), std::move(members.texts));
  }

  Level ReadLevel(uint32_t first_member) {
    Level level;
    level.name = in_.GetText();
    const auto kind = in_.Get<uint8_t>();
    const auto members = in_.Get<uint32_t>();
    Require(kind <= static_cast<uint8_t>(LevelKind::kDays) && members > 0 &&
            members < kNoMember - first_member);
    level.kind = static_cast<LevelKind>(kind);
    level.members = {first_member, first_member + members};
    return level;
  }

  Dimension ReadDimension(std::size_t hierarchy_count) {
    Dimension dimension;
    dimension.name = in_.GetText();
    dimension.caption = in_.GetText();
    dimension.is_time = ReadFlag();
    dimension.hierarchies.resize(in_.GetCount(sizeof(uint32_t)));
    Require(!dimension.hierarchies.empty());
    for (uint32_t& hierarchy : dimension.hierarchies) {
      hierarchy = in_.Get<uint32_t>();
      Require(hierarchy < hierarchy_count);
    }
    return dimension;
  }

  bool ReadFlag() {
    const auto flag = in_.Get<uint8_t>();
    Require(flag <= 1);
    return flag != 0;
  }

  void Require(bool condition) const {
    if (!condition) throw DamagedCubeFile(blocks_.file_name(), "its structure is not valid");
  }

  const BlockStore& blocks_;
  ByteReader in_;
};

std::vector<CalculatedDefinition> ReadCalculated(ByteReader in) {
  std::vector<CalculatedDefinition> members(in.GetCount(5 * kLeastText));
  for (CalculatedDefinition& member : members) {
    for (std::string* text :
         {&member.name, &member.caption, &member.above, &member.format_string, &member.formula}) {
      *text = in.GetText();
    }
    member.solve_order = in.Get<double>();
    const auto visible = in.Get<uint8_t>();
    if (visible > 1 || !std::isfinite(member.solve_order)) {
      throw DamagedCubeFile(in.file_name(), "a calculated member is not valid");
    }
    member.is_visible = visible != 0;
  }
  return members;
}

CubeOrigin ReadOrigin(const BlockStore& blocks, ByteReader in) {
  CubeOrigin origin;
  origin.address = in.GetText();
  origin.refreshed = in.Get<int64_t>();
  origin.record = in.Get<uint32_t>();
  if (origin.record >= blocks.count()) {
    throw DamagedCubeFile(blocks.file_name(), "the record of its origin is not there");
  }
  return origin;
}

StoredCube ReadCube(BlockStore& blocks, ByteReader& catalog) {
  std::optional<ByteReader> structure;
  std::optional<ByteReader> facts;
  std::optional<ByteReader> aggregates;
  std::optional<ByteReader> calculated;
  std::optional<ByteReader> origin;
  std::optional<ByteReader> live;
  for (auto tag = catalog.Get<SectionTag>(); tag != SectionTag::kEnd;
       tag = catalog.Get<SectionTag>()) {
    const ByteReader section(catalog.Take(catalog.Get<uint32_t>()), blocks.file_name());
    if (tag == SectionTag::kStructure) structure.emplace(section);
    if (tag == SectionTag::kFacts) facts.emplace(section);
    if (tag == SectionTag::kAggregates) aggregates.emplace(section);
    if (tag == SectionTag::kCalculated) calculated.emplace(section);
    if (tag == SectionTag::kOrigin) origin.emplace(section);
    if (tag == SectionTag::kLive) live.emplace(section);
  }
  if (!structure || facts.has_value() == live.has_value()) {
    throw DamagedCubeFile(blocks.file_name(), "a cube is incomplete");
  }
  StoredCube cube;
  cube.model = StructureReader(blocks, *structure).Read();
  if (calculated) cube.model.calculated = ReadCalculated(*calculated);
  if (origin) cube.origin = ReadOrigin(blocks, *origin);
  if (facts) cube.facts = ReadFactsSection(blocks, *facts, aggregates, cube.model);
  if (live) {
    cube.live = std::make_unique<LiveSource>(ReadLiveSection(blocks, *live, cube.model));
  }
  return cube;
}

class OpenedCubeFile : public CubeFile {
 public:
  OpenedCubeFile(std::shared_ptr<const FileReader> file, const std::string& name)
      : blocks_(std::move(file), name) {
    ByteReader catalog(blocks_.Keep(blocks_.catalog_block()), blocks_.file_name());
    cubes_.resize(catalog.GetCount(2 * sizeof(SectionTag)));
    for (StoredCube& cube : cubes_) {
      cube = ReadCube(blocks_, catalog);
      if ((cube.live != nullptr) == (cubes_.front().live != nullptr)) continue;
      throw DamagedCubeFile(blocks_.file_name(), "only some of its cubes are live");
    }
  }

  const std::vector<StoredCube>& cubes() const override { return cubes_; }
  HeldBlock RecordOf(const CubeOrigin& origin) const override {
    return blocks_.Read(origin.record);
  }

 private:
  BlockStore blocks_;
  std::vector<StoredCube> cubes_;
};

std::shared_ptr<const CubeFile> OpenFrom(const std::shared_ptr<const FileReader>& file,
                                         const std::string& name) {
  try {
    return std::make_shared<OpenedCubeFile>(file, name);
  } catch (const Failure&) {
    if (file->HasChanged()) throw FileChanged(name);
    throw;
  }
}

}  // namespace

std::shared_ptr<const CubeFile> CubeFile::Open(const Files& files, const std::string& path) {
  return OpenFrom(files.Open(path), path);
}

std::shared_ptr<const CubeFile> CubeFile::Open(std::span<const std::byte> bytes,
                                               const std::string& name) {
  return OpenFrom(ReaderOf(bytes), name);
}

}  // namespace vok::olap
