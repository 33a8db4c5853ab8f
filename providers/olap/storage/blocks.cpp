#include "providers/olap/storage/blocks.h"

#define XXH_INLINE_ALL  // the header alone, no library
#include <xxhash.h>

#include <cstring>
#include <utility>

namespace vok::olap {

Failure DamagedCubeFile(const std::string& file_name, const std::string& what) {
  return Failure(failure_number::kUnspecified, "The cube file " + file_name +
                                                   " is damaged or was cut short (" + what +
                                                   "). Build it again or take it from a copy.");
}

uint64_t Checksum(std::span<const std::byte> bytes) {
  return XXH3_64bits(bytes.data(), bytes.size());
}

BlockStore::BlockStore(std::span<const std::byte> bytes, std::string file_name)
    : bytes_(bytes), file_name_(std::move(file_name)) {
  CheckHeader();
  const FileFooter footer = CheckedFooter();
  const auto* entries =
      reinterpret_cast<const BlockEntry*>(bytes_.data() + footer.directory_offset);
  directory_ = {entries, static_cast<std::size_t>(footer.block_count)};
  if (Checksum(std::as_bytes(directory_)) != footer.directory_checksum) {
    throw DamagedCubeFile(file_name_, "its directory does not match its checksum");
  }
  CheckDirectory(footer.directory_offset);
  catalog_block_ = footer.catalog_block;
  verified_ = std::make_unique<std::atomic<bool>[]>(directory_.size());
}

void BlockStore::CheckHeader() {
  FileHeader header{};
  if (bytes_.size() >= sizeof(header)) std::memcpy(&header, bytes_.data(), sizeof(header));
  if (header.magic != kFileMagic) {
    throw Failure(failure_number::kUnspecified,
                  file_name_ + " is no cube file. Name a file that \"vokcube cube build\" made.");
  }
  if (header.version > kFormatVersion) {
    throw Failure(failure_number::kUnspecified,
                  "The cube file " + file_name_ + " has format version " +
                      std::to_string(header.version) + ", newer than this program reads (" +
                      std::to_string(kFormatVersion) + "). Update the program, or build the cube " +
                      "again with this one.");
  }
  if (header.version < kOldestVersion || header.reserved != 0) {
    throw DamagedCubeFile(file_name_, "its header is not valid");
  }
  version_ = header.version;
}

FileFooter BlockStore::CheckedFooter() const {
  FileFooter footer{};
  if (bytes_.size() < sizeof(FileHeader) + sizeof(footer)) {
    throw DamagedCubeFile(file_name_, "it is too short");
  }
  const auto raw = bytes_.last(sizeof(footer));
  std::memcpy(&footer, raw.data(), sizeof(footer));
  if (footer.magic != kEndMagic ||
      footer.checksum != Checksum(raw.first(offsetof(FileFooter, checksum))) ||
      footer.file_length != bytes_.size()) {
    throw DamagedCubeFile(file_name_, "its end is missing");
  }
  const uint64_t directory_end = bytes_.size() - sizeof(footer);
  if (footer.version != version_ || footer.reserved != 0 ||
      footer.block_count > directory_end / sizeof(BlockEntry) || footer.block_count >= kNoBlock ||
      footer.catalog_block >= footer.block_count ||
      footer.directory_offset != directory_end - footer.block_count * sizeof(BlockEntry) ||
      footer.directory_offset % kBlockAlignment != 0) {
    throw DamagedCubeFile(file_name_, "its footer is not valid");
  }
  return footer;
}

void BlockStore::CheckDirectory(uint64_t directory_offset) const {
  uint64_t expected = sizeof(FileHeader);
  for (const BlockEntry& entry : directory_) {
    if (entry.offset != expected || entry.length % kBlockAlignment != 0 ||
        entry.length > directory_offset - expected) {
      throw DamagedCubeFile(file_name_, "its directory is not valid");
    }
    expected += entry.length;
  }
  if (expected != directory_offset) {
    throw DamagedCubeFile(file_name_, "its directory leaves out a part of it");
  }
}

std::span<const std::byte> BlockStore::Block(uint32_t index) const {
  const BlockEntry& entry = directory_[index];
  const auto block = bytes_.subspan(entry.offset, entry.length);
  if (verified_[index].load(std::memory_order_relaxed)) return block;
  if (Checksum(block) != entry.checksum) {
    throw DamagedCubeFile(file_name_, "block " + std::to_string(index) + " of " +
                                          std::to_string(count()) + " does not match its checksum");
  }
  verified_[index].store(true, std::memory_order_relaxed);
  return block;
}

}  // namespace vok::olap
