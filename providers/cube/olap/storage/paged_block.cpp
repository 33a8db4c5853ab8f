#include "providers/cube/olap/storage/paged_block.h"

#include <algorithm>

namespace vok::olap {
namespace {

/// The pages of one block that stay when nobody holds them: all of most hierarchies.
constexpr std::size_t kMostPages = std::size_t{2} << 20;

}  // namespace

PagedBlock::PagedBlock(const BlockStore& blocks, uint32_t index)
    : blocks_(blocks), index_(index), checksums_(blocks.PageChecksums(index)), pages_(kMostPages) {}

HeldBlock PagedBlock::Page(uint32_t page) const {
  HeldBlock held = pages_.Find(page);
  if (held) return held;
  held = blocks_.ReadPage(index_, page, checksums_[page]);
  pages_.Keep(page, held);
  return held;
}

const std::byte* PageReader::Hold(uint64_t at) {
  const uint64_t page = at / kPageBytes;
  if (page != held_) {
    page_ = block_->Page(static_cast<uint32_t>(page));
    held_ = page;
  }
  return page_.bytes().data();
}

std::string_view PageReader::Text(uint64_t at, uint64_t size) {
  const auto piece_at = [&] {
    const uint64_t rest = kPageBytes - at % kPageBytes;
    const char* begin = reinterpret_cast<const char*>(Hold(at) + at % kPageBytes);
    return std::string_view(begin, static_cast<std::size_t>(std::min(size, rest)));
  };
  if (size == 0) return {};
  const std::string_view first = piece_at();
  if (first.size() == size) return first;
  joined_.clear();
  while (size > 0) {
    const std::string_view piece = piece_at();
    joined_ += piece;
    at += piece.size();
    size -= piece.size();
  }
  return joined_;
}

}  // namespace vok::olap
