// The blocks of a cube file: found through its directory, verified when they are first used.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "platform/failure.h"
#include "providers/olap/storage/format.h"

namespace vok::olap {

/// -2147467259, naming the file and what to do.
Failure DamagedCubeFile(const std::string& file_name, const std::string& what);

uint64_t Checksum(std::span<const std::byte> bytes);

/// Opening checks header, footer and directory; `Block` checks a block's checksum once. Safe to use
/// from several threads. `bytes` begin at a multiple of 8 and outlive the object.
class BlockStore {
 public:
  BlockStore(std::span<const std::byte> bytes, std::string file_name);

  std::span<const std::byte> Block(uint32_t index) const;
  /// Of a block that may not have been verified yet.
  uint64_t BlockLength(uint32_t index) const { return directory_[index].length; }
  uint32_t count() const { return static_cast<uint32_t>(directory_.size()); }
  uint32_t catalog_block() const { return catalog_block_; }
  const std::string& file_name() const { return file_name_; }

 private:
  void CheckHeader();
  FileFooter CheckedFooter() const;
  void CheckDirectory(uint64_t directory_offset) const;

  std::span<const std::byte> bytes_;
  std::string file_name_;
  std::span<const BlockEntry> directory_;
  uint32_t version_ = 0;
  uint32_t catalog_block_ = 0;
  std::unique_ptr<std::atomic<bool>[]> verified_;
};

}  // namespace vok::olap
