#include "providers/cube/olap/storage/blocks.h"

#define XXH_INLINE_ALL  // the header alone, no library
#include <xxhash.h>

#include <algorithm>
#include <utility>

namespace vok::olap {
namespace {

/// The memory that blocks of facts may take which nobody uses at the moment. What a run asks of a
/// cube of some ten million facts fits.
constexpr std::size_t kMostCached = std::size_t{128} << 20;

}  // namespace

Failure DamagedCubeFile(const std::string& file_name, const std::string& what) {
  return Failure(failure_number::kUnspecified, "The cube file " + file_name +
                                                   " is damaged or was cut short (" + what +
                                                   "). Build it again or take it from a copy.");
}

uint64_t Checksum(std::span<const std::byte> bytes) {
  return XXH3_64bits(bytes.data(), bytes.size());
}

BlockStore::BlockStore(std::shared_ptr<const FileReader> file, std::string file_name)
    : file_(std::move(file)), file_name_(std::move(file_name)), cache_(kMostCached) {
  CheckHeader();
  const FileFooter footer = CheckedFooter();
  ReadDirectory(footer);
  CheckDirectory(footer.directory_offset);
  catalog_block_ = footer.catalog_block;
}

void BlockStore::ReadDirectory(const FileFooter& footer) {
  directory_.resize(static_cast<std::size_t>(footer.block_count));
  const auto bytes = std::as_writable_bytes(std::span(directory_));
  file_->Read(footer.directory_offset, bytes);
  if (Checksum(bytes) != footer.directory_checksum) {
    throw DamagedCubeFile(file_name_, "its directory does not match its checksum");
  }
}

void BlockStore::CheckHeader() {
  FileHeader header{};
  if (file_->Size() >= sizeof(header)) {
    file_->Read(0, std::as_writable_bytes(std::span(&header, 1)));
  }
  if (header.magic != kFileMagic) {
    const char* words =
        file_->Size() == 0 ? " is empty; if it is being copied, wait. " : " is not a cube file. ";
    throw Failure(failure_number::kUnspecified,
                  file_name_ + words + "Name a file that \"vokcube cube build\" made.");
  }
  if (header.version > kLiveVersion) {
    throw Failure(failure_number::kUnspecified,
                  "The cube file " + file_name_ + " has format version " +
                      std::to_string(header.version) + ", newer than this program reads (" +
                      std::to_string(kLiveVersion) + "). Update the program, or build the cube " +
                      "again with this one.");
  }
  if (header.version < kOldestVersion || header.reserved != 0) {
    throw DamagedCubeFile(file_name_, "its header is not valid");
  }
  version_ = header.version;
}

FileFooter BlockStore::CheckedFooter() const {
  FileFooter footer{};
  if (file_->Size() < sizeof(FileHeader) + sizeof(footer)) {
    throw DamagedCubeFile(file_name_, "it is too short");
  }
  const auto raw = std::as_writable_bytes(std::span(&footer, 1));
  file_->Read(file_->Size() - sizeof(footer), raw);
  if (footer.magic != kEndMagic ||
      footer.checksum != Checksum(raw.first(offsetof(FileFooter, checksum))) ||
      footer.file_length != file_->Size()) {
    throw DamagedCubeFile(file_name_, "its end is missing");
  }
  const uint64_t directory_end = file_->Size() - sizeof(footer);
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

HeldBlock BlockStore::Read(uint32_t index) const {
  HeldBlock block = cache_.Find(index);
  if (block) return block;
  block = Checked(index);
  cache_.Keep(index, block);
  return block;
}

std::span<const std::byte> BlockStore::Keep(uint32_t index) {
  return kept_.emplace_back(Checked(index)).bytes();
}

std::vector<uint64_t> BlockStore::PageChecksums(uint32_t index) const {
  XXH3_state_t whole;
  XXH3_64bits_reset(&whole);
  std::vector<uint64_t> checksums;
  for (uint64_t begin = 0; begin < BlockLength(index); begin += kPageBytes) {
    const HeldBlock page = Unchecked(index, begin, kPageBytes);
    XXH3_64bits_update(&whole, page.bytes().data(), page.bytes().size());
    checksums.push_back(Checksum(page.bytes()));
  }
  if (XXH3_64bits_digest(&whole) != directory_[index].checksum) FailChecksum(index);
  return checksums;
}

HeldBlock BlockStore::ReadPage(uint32_t index, uint32_t page, uint64_t checksum) const {
  HeldBlock held = Unchecked(index, uint64_t{page} * kPageBytes, kPageBytes);
  if (Checksum(held.bytes()) != checksum) FailChecksum(index);
  return held;
}

HeldBlock BlockStore::Checked(uint32_t index) const {
  HeldBlock block = Unchecked(index, 0, BlockLength(index));
  if (Checksum(block.bytes()) != directory_[index].checksum) FailChecksum(index);
  return block;
}

/// Up to `most` bytes of the block from `begin` on.
HeldBlock BlockStore::Unchecked(uint32_t index, uint64_t begin, uint64_t most) const {
  const BlockEntry& entry = directory_[index];
  const uint64_t size = std::min(most, entry.length - begin);
  auto [block, bytes] = HeldBlock::New(static_cast<std::size_t>(size));
  file_->Read(entry.offset + begin, bytes);
  return std::move(block);
}

void BlockStore::FailChecksum(uint32_t index) const {
  if (file_->HasChanged()) throw FileChanged(file_name_);
  throw DamagedCubeFile(file_name_, "block " + std::to_string(index) + " of " +
                                        std::to_string(count()) + " does not match its checksum");
}

}  // namespace vok::olap
