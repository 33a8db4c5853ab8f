// Columns of integers that memory should not hold, packed and put aside on a disk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/files.h"

namespace vok::olap {

/// A file of several spools that are filled one after the other.
struct SpoolFile {
  std::unique_ptr<ScratchFile> file;
  uint64_t bytes = 0;
};

class ColumnSpool {
 public:
  ColumnSpool(std::shared_ptr<SpoolFile> file, std::size_t columns);

  /// As many values for each column.
  void Append(std::span<const std::vector<int64_t>> columns);
  /// After the last rows; then they can be read, and the file's next spool be filled.
  void Finish();

  uint64_t rows() const { return rows_; }
  /// Fills the span with a column's values from row `first` on. Several threads may call it at
  /// once.
  void Read(std::size_t column, uint64_t first, std::span<int64_t> values) const;

 private:
  struct Chunk {
    uint64_t offset;
    int64_t low;
    uint32_t width;  ///< bits of a value
  };

  void WriteChunks(std::size_t rows);
  void ReadChunk(const Chunk& chunk, uint64_t first, std::span<int64_t> values) const;

  std::shared_ptr<SpoolFile> file_;
  uint64_t rows_ = 0;
  std::vector<std::vector<int64_t>> pending_;  // of each column, less than a chunk
  std::vector<std::vector<Chunk>> chunks_;
  std::string bytes_;  // not yet in the file
};

}  // namespace vok::olap
