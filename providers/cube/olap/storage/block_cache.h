// Blocks of a cube file in private memory, those that were used last.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <span>
#include <unordered_map>
#include <utility>

namespace vok::olap {

/// A block's bytes; they stay while it is held. Eight bytes can be read from any of them.
class HeldBlock {
 public:
  HeldBlock() = default;
  /// Of `size` bytes that are to be filled.
  static std::pair<HeldBlock, std::span<std::byte>> New(std::size_t size);

  explicit operator bool() const { return bytes_ != nullptr; }
  std::span<const std::byte> bytes() const { return {bytes_.get(), size_}; }

 private:
  std::shared_ptr<const std::byte[]> bytes_;
  std::size_t size_ = 0;
};

/// Holds blocks of up to `most_bytes` together, and always the one that came last. Safe to use from
/// several threads.
class BlockCache {
 public:
  explicit BlockCache(std::size_t most_bytes) : most_bytes_(most_bytes) {}

  /// An empty one when it is not there.
  HeldBlock Find(uint32_t index);
  void Keep(uint32_t index, const HeldBlock& block);

 private:
  using Blocks = std::list<std::pair<uint32_t, HeldBlock>>;

  std::mutex mutex_;
  Blocks blocks_;  // used last, first
  std::unordered_map<uint32_t, Blocks::iterator> places_;
  std::size_t bytes_ = 0;
  std::size_t most_bytes_;
};

}  // namespace vok::olap
