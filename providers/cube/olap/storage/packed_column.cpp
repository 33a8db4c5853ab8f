#include "providers/cube/olap/storage/packed_column.h"

#include <algorithm>
#include <bit>

namespace vok::olap {
namespace {

/// Any value up to this width lies within the eight bytes that begin where it begins.
constexpr uint32_t kWidestPacked = 56;

// Eight bytes can be read from any byte of a block.
uint64_t LoadWord(const std::byte* from) {
  uint64_t word;
  std::memcpy(&word, from, sizeof(word));
  return word;
}

uint64_t MaskOf(uint32_t width) { return width == 64 ? ~uint64_t{0} : (uint64_t{1} << width) - 1; }

uint64_t PackedAt(const std::byte* block, uint64_t index, uint32_t width, uint64_t mask) {
  const uint64_t bit = index * width;
  return (LoadWord(block + bit / 8) >> (bit % 8)) & mask;
}

template <typename T>
void UnpackAs(PackedNumbers numbers, uint64_t first, std::size_t count, T* values) {
  const uint64_t low = static_cast<uint64_t>(numbers.low);
  if (numbers.width == 0) {
    std::fill_n(values, count, static_cast<T>(low));
    return;
  }
  const uint64_t mask = MaskOf(numbers.width);
  for (std::size_t index = 0; index < count; ++index) {
    values[index] =
        static_cast<T>(low + PackedAt(numbers.bytes, first + index, numbers.width, mask));
  }
}

}  // namespace

uint32_t PackedWidth(int64_t low, int64_t high) {
  const auto width = static_cast<uint32_t>(
      std::bit_width(static_cast<uint64_t>(high) - static_cast<uint64_t>(low)));
  return width > kWidestPacked ? 64 : width;
}

std::string Pack(std::span<const int64_t> values, int64_t low, uint32_t width) {
  constexpr uint32_t kWordBits = 64;
  const auto size = static_cast<std::size_t>((uint64_t{values.size()} * width + 7) / 8);
  std::string bytes(size + sizeof(uint64_t), '\0');
  char* place = bytes.data();
  uint64_t word = 0;
  uint32_t used = 0;  // bits of the word
  for (const int64_t value : values) {
    const uint64_t packed = static_cast<uint64_t>(value) - static_cast<uint64_t>(low);
    word |= packed << used;
    used += width;
    if (used < kWordBits) continue;
    std::memcpy(place, &word, sizeof(word));
    place += sizeof(word);
    used -= kWordBits;
    word = used == 0 ? 0 : packed >> (width - used);
  }
  std::memcpy(place, &word, sizeof(word));
  bytes.resize(size);
  return bytes;
}

void Unpack(const PackedNumbers& numbers, uint64_t first, std::size_t count, int64_t* values) {
  UnpackAs(numbers, first, count, values);
}

void Unpack(const PackedNumbers& numbers, uint64_t first, std::size_t count, uint32_t* values) {
  UnpackAs(numbers, first, count, values);
}

PackedColumn::PackedColumn(const BlockStore& blocks, std::span<const ChunkEntry> chunks,
                           uint64_t rows)
    : blocks_(&blocks), chunks_(chunks) {
  uint64_t rest = rows;
  for (const ChunkEntry& chunk : chunks) {
    const uint64_t count = std::min<uint64_t>(rest, kChunkRows);
    rest -= count;
    const bool constant = chunk.low == chunk.high;
    if (chunk.low > chunk.high || chunk.width != PackedWidth(chunk.low, chunk.high) ||
        (constant ? chunk.block != kNoBlock
                  : chunk.block >= blocks.count() ||
                        blocks.BlockLength(chunk.block) < (count * chunk.width + 7) / 8)) {
      throw DamagedCubeFile(blocks.file_name(), "a chunk of facts is not valid");
    }
  }
}

PackedNumbers ColumnReader::NumbersOf(uint64_t row) {
  const ChunkEntry& chunk = ChunkOf(row);
  if (chunk.width == 0) return {nullptr, chunk.low, 0};
  if (held_ != chunk.block) {
    block_ = column_->blocks().Read(chunk.block);
    held_ = chunk.block;
  }
  return {block_.bytes().data(), chunk.low, chunk.width};
}

int64_t ColumnReader::At(uint64_t row) {
  const PackedNumbers numbers = NumbersOf(row);
  if (numbers.width == 0) return numbers.low;
  return static_cast<int64_t>(
      static_cast<uint64_t>(numbers.low) +
      PackedAt(numbers.bytes, row % kChunkRows, numbers.width, MaskOf(numbers.width)));
}

void ColumnReader::Unpack(uint64_t row, std::size_t count, int64_t* values) {
  UnpackAs(NumbersOf(row), row % kChunkRows, count, values);
}

void ColumnReader::Unpack(uint64_t row, std::size_t count, uint32_t* values) {
  UnpackAs(NumbersOf(row), row % kChunkRows, count, values);
}

}  // namespace vok::olap
