// A block of structure that may be too long to stand in memory: it is read in pages, where it is
// needed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "providers/cube/olap/storage/block_cache.h"
#include "providers/cube/olap/storage/blocks.h"

namespace vok::olap {

/// Its making reads all of the block once, checks it and keeps a checksum of each page; a page that
/// is read later and has another one is a failure, as any block is. Safe to use from several
/// threads. `blocks` outlives it.
class PagedBlock {
 public:
  PagedBlock(const BlockStore& blocks, uint32_t index);

  uint64_t length() const { return blocks_.BlockLength(index_); }
  HeldBlock Page(uint32_t page) const;

 private:
  const BlockStore& blocks_;
  uint32_t index_;
  std::vector<uint64_t> checksums_;  // of each page
  mutable BlockCache pages_;
};

/// Reads a block, which outlives it, from one place on: holds the page that was read last. All that
/// is asked for lies within the block.
class PageReader {
 public:
  explicit PageReader(const PagedBlock& block) : block_(&block) {}

  /// `at` is a multiple of the number's size.
  template <typename T>
  T Get(uint64_t at) {
    T number;
    std::memcpy(&number, Hold(at) + at % kPageBytes, sizeof(T));
    return number;
  }
  /// Lasts until the next call.
  std::string_view Text(uint64_t at, uint64_t size);

 private:
  /// The page that the byte is in.
  const std::byte* Hold(uint64_t at);

  const PagedBlock* block_;
  uint64_t held_ = UINT64_MAX;
  HeldBlock page_;
  std::string joined_;  // a text of several pages
};

}  // namespace vok::olap
