#include "providers/cube/olap/storage/block_cache.h"

#include <algorithm>

namespace vok::olap {

std::pair<HeldBlock, std::span<std::byte>> HeldBlock::New(std::size_t size) {
  constexpr std::size_t kReadBeyond = sizeof(uint64_t);
  const auto bytes = std::make_shared_for_overwrite<std::byte[]>(size + kReadBeyond);
  std::fill_n(bytes.get() + size, kReadBeyond, std::byte{0});
  HeldBlock block;
  block.bytes_ = bytes;
  block.size_ = size;
  return {std::move(block), std::span(bytes.get(), size)};
}

HeldBlock BlockCache::Find(uint32_t index) {
  const std::lock_guard lock(mutex_);
  const auto found = places_.find(index);
  if (found == places_.end()) return {};
  blocks_.splice(blocks_.begin(), blocks_, found->second);
  return found->second->second;
}

void BlockCache::Keep(uint32_t index, const HeldBlock& block) {
  const std::lock_guard lock(mutex_);
  if (places_.contains(index)) return;
  blocks_.emplace_front(index, block);
  places_[index] = blocks_.begin();
  bytes_ += block.bytes().size();
  while (bytes_ > most_bytes_ && blocks_.size() > 1) {
    bytes_ -= blocks_.back().second.bytes().size();
    places_.erase(blocks_.back().first);
    blocks_.pop_back();
  }
}

}  // namespace vok::olap
