#include "providers/cube/olap/storage/cube_writer.h"

#include <algorithm>
#include <utility>

#include "platform/in_order.h"
#include "providers/cube/olap/storage/blocks.h"
#include "providers/cube/olap/storage/hierarchy_block.h"
#include "providers/cube/olap/storage/packed_column.h"

namespace vok::olap {
namespace {

template <typename T>
std::string_view BytesOf(const T& value) {
  return {reinterpret_cast<const char*>(&value), sizeof(value)};
}

template <typename T>
std::string_view BytesOf(const std::vector<T>& values) {
  return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T)};
}

uint64_t ChecksumOf(std::string_view bytes) {
  return Checksum(std::as_bytes(std::span(bytes.data(), bytes.size())));
}

void PutLevels(ByteWriter& out, const std::vector<Level>& levels) {
  out.Put(static_cast<uint32_t>(levels.size()));
  for (const Level& level : levels) {
    out.PutText(level.name);
    out.Put(level.kind);
    out.Put(level.members.size());
  }
}

struct PackedChunk {
  PackedChunk(const ColumnSource& source, uint64_t first, uint64_t rows) {
    std::vector<int64_t> values(std::min<uint64_t>(rows - first, kChunkRows));
    source(first, values);
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    entry = {*low, *high, kNoBlock, PackedWidth(*low, *high)};
    if (entry.width > 0) bytes = Pack(values, entry.low, entry.width);
  }

  ChunkEntry entry;  // its block is not known yet
  std::string bytes;
};

}  // namespace

CubeWriter::CubeWriter(Files& files, const std::string& path, unsigned threads, uint32_t version)
    : CubeWriter(files.Replace(path), threads, version) {}

CubeWriter::CubeWriter(std::unique_ptr<FileReplacement> file, unsigned threads, uint32_t version)
    : file_(std::move(file)), threads_(threads), version_(version) {
  Write(BytesOf(FileHeader{kFileMagic, version_, 0}));
}

void CubeWriter::Write(std::string_view bytes) {
  file_->Write(std::as_bytes(std::span(bytes.data(), bytes.size())));
  position_ += bytes.size();
}

uint32_t CubeWriter::AddBlock(std::string_view bytes) {
  const uint64_t offset = position_;
  std::string padded(bytes);
  padded.resize((bytes.size() + kBlockAlignment - 1) / kBlockAlignment * kBlockAlignment);
  Write(padded);
  directory_.push_back({offset, padded.size(), ChecksumOf(padded)});
  return static_cast<uint32_t>(directory_.size() - 1);
}

void CubeWriter::AddSection(SectionTag tag, const ByteWriter& payload) {
  cubes_.Put(tag);
  cubes_.PutText(payload.bytes());
}

uint64_t CubeWriter::Begin(const NewCube& cube, const NewFacts& facts) {
  AddStructure(cube);
  uint64_t value_bytes = 0;
  AddSection(SectionTag::kFacts, FactsSection(facts, value_bytes));
  return value_bytes;
}

void CubeWriter::Begin(const NewCube& cube, const LiveSource& source) {
  AddStructure(cube);
  AddSection(SectionTag::kLive,
             LiveSection(source, [this](std::string_view bytes) { return AddBlock(bytes); }));
}

void CubeWriter::AddStructure(const NewCube& cube) {
  AddSection(SectionTag::kStructure, Structure(cube));
  if (!cube.calculated.empty()) {
    AddSection(SectionTag::kCalculated, CalculatedSection(cube.calculated));
  }
}

void CubeWriter::AddAggregates(const NewAggregates& aggregates) {
  ByteWriter out;
  out.Put(aggregates.inner);
  out.Put(aggregates.time);
  out.Put(static_cast<uint32_t>(aggregates.columns.size()));
  out.PutAll(std::span(aggregates.columns));
  out.Put(static_cast<uint32_t>(aggregates.sets.size()));
  for (const NewCuboidSet& set : aggregates.sets) {
    out.Put(static_cast<uint32_t>(set.outer.size()));
    out.PutAll(std::span(set.outer));
    out.Put(static_cast<uint32_t>(set.cuboids.size()));
    for (const NewCuboid& cuboid : set.cuboids) {
      if (aggregates.time != kNoTime) out.Put(cuboid.time_level);
      out.Put(cuboid.cells);
      out.Put(cuboid.table);
    }
  }
  AddSection(SectionTag::kAggregates, out);
}

void CubeWriter::AddOrigin(const CubeOrigin& origin) {
  ByteWriter out;
  out.PutText(origin.address);
  out.Put(origin.refreshed);
  out.Put(origin.record);
  AddSection(SectionTag::kOrigin, out);
}

void CubeWriter::End() {
  cubes_.Put(SectionTag::kEnd);
  ++cube_count_;
}

ByteWriter CubeWriter::Structure(const NewCube& cube) {
  ByteWriter out;
  out.PutText(cube.name);
  out.PutText(cube.caption);
  out.Put(cube.fact_count);
  out.Put(cube.default_measure);
  out.Put(static_cast<uint32_t>(cube.measures.size()));
  for (const Measure& measure : cube.measures) {
    out.PutText(measure.name);
    out.PutText(measure.caption);
    out.PutText(measure.format_string);
    out.Put(measure.aggregator);
  }
  out.Put(static_cast<uint32_t>(cube.hierarchies.size()));
  for (const NewHierarchy& hierarchy : cube.hierarchies) {
    out.PutText(hierarchy.dimension_name);
    out.PutText(hierarchy.name);
    out.Put(hierarchy.has_all);
    PutLevels(out, hierarchy.levels);
    out.Put(AddBlock(HierarchyBlock(hierarchy)));
  }
  out.Put(static_cast<uint32_t>(cube.dimensions.size()));
  for (const Dimension& dimension : cube.dimensions) {
    out.PutText(dimension.name);
    out.PutText(dimension.caption);
    out.Put(dimension.is_time);
    out.Put(static_cast<uint32_t>(dimension.hierarchies.size()));
    out.PutAll(std::span(dimension.hierarchies));
  }
  return out;
}

ByteWriter CubeWriter::CalculatedSection(const std::vector<CalculatedDefinition>& members) {
  ByteWriter out;
  out.Put(static_cast<uint32_t>(members.size()));
  for (const CalculatedDefinition& member : members) {
    for (const std::string* text :
         {&member.name, &member.caption, &member.above, &member.format_string, &member.formula}) {
      out.PutText(*text);
    }
    out.Put(member.solve_order);
    out.Put(member.is_visible);
  }
  return out;
}

ByteWriter CubeWriter::FactsSection(const NewFacts& facts, uint64_t& value_bytes) {
  ByteWriter out;
  std::vector<ChunkEntry> chunks;
  const auto add = [&](const ColumnSource& source) {
    const auto added = AddColumn(facts.rows, source);
    chunks.insert(chunks.end(), added.begin(), added.end());
  };
  out.Put(facts.rows);
  out.Put(kChunkRows);
  out.Put(static_cast<uint32_t>(facts.keys.size()));
  for (const NewKeyColumn& key : facts.keys) {
    out.Put(key.hierarchy);
    add(key.leaves);
  }
  const uint64_t keys_end = position_;
  out.Put(static_cast<uint32_t>(facts.values.size()));
  for (const NewValueColumn& column : facts.values) {
    out.Put(column.format.kind);
    out.Put(column.format.scale);
    out.Put(column.format.is_narrow);
    out.Put(column.format.has_nulls);
    add(column.values);
    if (column.format.has_nulls) add(column.validity);
  }
  value_bytes = position_ - keys_end;
  out.PutAll(std::span(facts.value_of_measure));
  out.Put(AddBlock(BytesOf(chunks)));
  return out;
}

std::vector<ChunkEntry> CubeWriter::AddColumn(uint64_t rows, const ColumnSource& source) {
  std::vector<ChunkEntry> chunks;
  uint64_t next = 0;
  RunInOrder(threads_, [&]() -> Working {
    if (next >= rows) return {};
    const uint64_t first = std::exchange(next, next + kChunkRows);
    return [this, &source, &chunks, rows, first]() -> Taking {
      const auto chunk = std::make_shared<const PackedChunk>(source, first, rows);
      return [this, &chunks, chunk] {
        chunks.push_back(chunk->entry);
        if (chunk->entry.width > 0) chunks.back().block = AddBlock(chunk->bytes);
      };
    };
  });
  return chunks;
}

uint64_t CubeWriter::Finish() {
  ByteWriter catalog;
  catalog.Put(cube_count_);
  FileFooter footer{};
  footer.catalog_block = AddBlock(std::string(catalog.bytes()) + std::string(cubes_.bytes()));
  footer.directory_offset = position_;
  footer.block_count = directory_.size();
  footer.directory_checksum = ChecksumOf(BytesOf(directory_));
  Write(BytesOf(directory_));
  footer.file_length = position_ + sizeof(footer);
  footer.version = version_;
  footer.checksum = ChecksumOf(BytesOf(footer).substr(0, offsetof(FileFooter, checksum)));
  footer.magic = kEndMagic;
  Write(BytesOf(footer));
  file_->Commit();
  return position_;
}

}  // namespace vok::olap
