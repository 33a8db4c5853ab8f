// The blocks of a cube file: found through its directory, read into private memory and verified
// there, so that nothing that is done to the file changes them afterwards.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "platform/files.h"
#include "providers/cube/olap/storage/block_cache.h"
#include "providers/cube/olap/storage/format.h"

namespace vok::olap {

/// -2147467259, naming the file and what to do.
Failure DamagedCubeFile(const std::string& file_name, const std::string& what);

uint64_t Checksum(std::span<const std::byte> bytes);

/// Long blocks can be read in pages of so many bytes.
inline constexpr std::size_t kPageBytes = std::size_t{64} << 10;

/// Opening reads and checks header, footer and directory. Failures: "damaged"; `FileChanged` for a
/// file that was changed since. Reading is safe from several threads.
class BlockStore {
 public:
  BlockStore(std::shared_ptr<const FileReader> file, std::string file_name);

  /// For what is read in pieces while it is needed.
  HeldBlock Read(uint32_t index) const;
  /// The checksums of the block's pages of `kPageBytes`, the last of them shorter, when that of the
  /// whole block is right.
  std::vector<uint64_t> PageChecksums(uint32_t index) const;
  HeldBlock ReadPage(uint32_t index, uint32_t page, uint64_t checksum) const;
  /// For structure: stays as long as the store. Not safe from several threads.
  std::span<const std::byte> Keep(uint32_t index);
  /// Of a block that may not have been read yet.
  uint64_t BlockLength(uint32_t index) const { return directory_[index].length; }
  uint32_t count() const { return static_cast<uint32_t>(directory_.size()); }
  uint32_t catalog_block() const { return catalog_block_; }
  const std::string& file_name() const { return file_name_; }

 private:
  void CheckHeader();
  FileFooter CheckedFooter() const;
  void ReadDirectory(const FileFooter& footer);
  void CheckDirectory(uint64_t directory_offset) const;
  HeldBlock Checked(uint32_t index) const;
  HeldBlock Unchecked(uint32_t index, uint64_t begin, uint64_t most) const;
  [[noreturn]] void FailChecksum(uint32_t index) const;

  std::shared_ptr<const FileReader> file_;
  std::string file_name_;
  std::vector<BlockEntry> directory_;
  uint32_t version_ = 0;
  uint32_t catalog_block_ = 0;
  std::vector<HeldBlock> kept_;
  mutable BlockCache cache_;
};

}  // namespace vok::olap
