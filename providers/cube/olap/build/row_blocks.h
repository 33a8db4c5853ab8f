// A CSV file's bytes, cut into blocks of whole rows. Where the bytes come from is apart from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "platform/files.h"

namespace vok::olap {

/// Bytes that are read once, from the first to the last.
class ByteSource {
 public:
  virtual ~ByteSource() = default;
  /// Fills `bytes` and returns how many there were; fewer than asked for at the end alone.
  virtual std::size_t Read(std::span<std::byte> bytes) = 0;
  /// How much is read, 0 to 1.
  virtual double Done() const = 0;
};

/// A file's. Failure `FileChanged` when it is not any more what it was when it was opened.
std::unique_ptr<ByteSource> BytesOfFile(std::shared_ptr<const FileReader> file, std::string path);

struct RowBlock {
  std::string text;
  uint64_t first_line = 1;  ///< of the file, where `text` begins
  bool is_cut = false;      ///< its last row is longer than may be, and not all of it is here
};

/// A row ends at a line end with an even number of quotes before it. Where a quote stands that may
/// not, what is cut after it has no meaning; who reads the rows in their order finds it first.
class RowBlocks {
 public:
  static constexpr std::size_t kLongestRow = std::size_t{16} << 20;

  explicit RowBlocks(std::unique_ptr<ByteSource> source) : source_(std::move(source)) {}

  /// Nothing after the last one. Some MB each, more where a row is longer.
  std::optional<RowBlock> Next();
  double Done() const { return source_->Done(); }

 private:
  void ReadPiece(std::string& text);

  std::unique_ptr<ByteSource> source_;
  std::string rest_;  // the beginning of a row
  uint64_t next_line_ = 1;
  bool is_at_end_ = false;
};

}  // namespace vok::olap
