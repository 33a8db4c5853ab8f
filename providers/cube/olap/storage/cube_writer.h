// Writing a cube file: structure and facts of one cube after the other, in one pass.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/files.h"
#include "providers/cube/olap/storage/bytes.h"
#include "providers/cube/olap/storage/cuboids.h"
#include "providers/cube/olap/storage/format.h"
#include "providers/cube/olap/storage/live_source.h"
#include "providers/cube/olap/storage/model.h"

namespace vok::olap {

struct NewMember {
  MemberId parent = kNoMember;
  std::string name;
  std::string caption;
};

/// Members stand level by level, each level in the order of its parents.
struct NewHierarchy {
  std::string dimension_name;
  std::string name;
  bool has_all = false;
  std::vector<Level> levels;
  std::vector<NewMember> members;

  uint32_t LeafCount() const { return levels.back().members.size(); }
};

/// Fills the span with a column's values from row `first` on. Several threads may call it at once.
using ColumnSource = std::function<void(uint64_t first, std::span<int64_t> values)>;

struct NewKeyColumn {
  uint32_t hierarchy = 0;
  ColumnSource leaves;
};

struct NewValueColumn {
  ValueFormat format;
  /// Scaled integers, or the bits of doubles; 0 for NULL.
  ColumnSource values;
  ColumnSource validity;  ///< 1 or 0; only when the format has NULLs
};

/// Rows in ascending order of the keys, the first column first. Every hierarchy has one key column.
struct NewFacts {
  uint64_t rows = 0;
  std::vector<NewKeyColumn> keys;
  std::vector<NewValueColumn> values;
  std::vector<uint32_t> value_of_measure;  ///< index into `values` for each measure
};

/// Cuboids as docs/cube-file.md describes them; `tables` and all blocks are written already.
struct NewCuboid {
  uint32_t time_level = 0;  ///< ignored without a time hierarchy
  uint64_t cells = 0;
  uint32_t table = 0;  ///< the block that lists the cuboid's blocks
};
struct NewCuboidSet {
  std::vector<HierarchyLevel> outer;
  std::vector<NewCuboid> cuboids;
};
struct NewAggregates {
  uint32_t inner = 0;
  uint32_t time = kNoTime;
  std::vector<uint32_t> columns;
  std::vector<NewCuboidSet> sets;
};

struct NewCube {
  std::string name;
  std::string caption;
  std::vector<Dimension> dimensions;
  std::vector<NewHierarchy> hierarchies;
  std::vector<Measure> measures;
  std::vector<CalculatedDefinition> calculated;
  uint32_t default_measure = 0;
  uint64_t fact_count = 0;
};

/// A cube is begun, given its aggregates if it has any, and ended; then the next one. `Finish`
/// commits; without it nothing has happened to the file. Failures are those of `FileReplacement`.
class CubeWriter {
 public:
  /// Columns are packed on `threads`; `version` is that of the format.
  CubeWriter(Files& files, const std::string& path, unsigned threads = 1,
             uint32_t version = kFormatVersion);
  explicit CubeWriter(std::unique_ptr<FileReplacement> file, unsigned threads = 1,
                      uint32_t version = kFormatVersion);

  /// Returns how many bytes the facts' values take.
  uint64_t Begin(const NewCube& cube, const NewFacts& facts);
  /// A live cube, in a file of `kLiveVersion`.
  void Begin(const NewCube& cube, const LiveSource& source);
  void AddAggregates(const NewAggregates& aggregates);
  void AddOrigin(const CubeOrigin& origin);
  void End();
  /// Returns the number of the block.
  uint32_t AddBlock(std::string_view bytes);
  /// Returns the file's length in bytes.
  uint64_t Finish();

 private:
  void Write(std::string_view bytes);
  void AddSection(SectionTag tag, const ByteWriter& payload);
  void AddStructure(const NewCube& cube);
  ByteWriter Structure(const NewCube& cube);
  static ByteWriter CalculatedSection(const std::vector<CalculatedDefinition>& members);
  ByteWriter FactsSection(const NewFacts& facts, uint64_t& value_bytes);
  std::vector<ChunkEntry> AddColumn(uint64_t rows, const ColumnSource& source);

  std::unique_ptr<FileReplacement> file_;
  unsigned threads_;
  uint32_t version_;
  uint64_t position_ = 0;
  std::vector<BlockEntry> directory_;
  ByteWriter cubes_;
  uint32_t cube_count_ = 0;
};

}  // namespace vok::olap
