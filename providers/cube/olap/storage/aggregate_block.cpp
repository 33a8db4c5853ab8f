#include "providers/cube/olap/storage/aggregate_block.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "providers/cube/olap/storage/bytes.h"
#include "providers/cube/olap/storage/packed_column.h"

namespace vok::olap {
namespace {

constexpr uint32_t kWordBits = 64;

constexpr uint64_t WordsFor(uint64_t bits) { return (bits + kWordBits - 1) / kWordBits; }

std::vector<uint64_t> Bitmap(std::size_t bits, std::span<const uint32_t> set) {
  std::vector<uint64_t> words(WordsFor(bits));
  for (const uint32_t bit : set) words[bit / kWordBits] |= uint64_t{1} << bit % kWordBits;
  return words;
}

std::vector<uint64_t> Bitmap(std::span<const uint8_t> flags) {
  std::vector<uint64_t> words(WordsFor(flags.size()));
  for (std::size_t bit = 0; bit < flags.size(); ++bit) {
    words[bit / kWordBits] |= uint64_t{flags[bit]} << bit % kWordBits;
  }
  return words;
}

}  // namespace

std::string AggregateBlockBytes(uint32_t inner_count, std::span<const uint32_t> leaves,
                                std::span<const NewCellColumn> columns) {
  ByteWriter out;
  out.PutAll(std::span<const uint64_t>(Bitmap(inner_count, leaves)));
  for (const NewCellColumn& column : columns) {
    const auto [low, high] = std::minmax_element(column.values.begin(), column.values.end());
    const uint32_t width = PackedWidth(*low, *high);
    out.Put(*low);
    out.Put(uint64_t{width});
    out.PutAll(std::span<const uint64_t>(Bitmap(column.validity)));
    std::string packed = Pack(column.values, *low, width);
    packed.resize(WordsFor(packed.size() * 8) * sizeof(uint64_t));
    out.PutAll(std::span<const char>(packed));
  }
  return std::string(out.bytes());
}

AggregateBlock::AggregateBlock(std::span<const std::byte> block, uint32_t inner_count,
                               std::span<const ValueFormat> formats, const std::string& file_name)
    : columns_(formats.size()) {
  const auto require = [&](bool condition) {
    if (!condition) throw DamagedCubeFile(file_name, "a block of aggregates is not valid");
  };
  ByteReader in(block, file_name);
  const auto words = in.GetAll<uint64_t>(WordsFor(inner_count));
  bitmap_ = reinterpret_cast<const std::byte*>(words.data());
  const uint32_t last_bits = inner_count % kWordBits;
  require(last_bits == 0 || words.back() >> last_bits == 0);
  uint64_t cells = 0;
  for (const uint64_t word : words) cells += static_cast<uint64_t>(std::popcount(word));
  for (std::size_t index = 0; index < formats.size(); ++index) {
    Column& column = columns_[index];
    column.low = in.Get<int64_t>();
    const auto width = in.Get<uint64_t>();
    require(width <= 64);
    column.width = static_cast<uint32_t>(width);
    if (formats[index].has_nulls) {
      column.validity = in.Take(WordsFor(cells) * sizeof(uint64_t)).data();
    }
    column.values = in.Take(WordsFor(cells * width) * sizeof(uint64_t)).data();
  }
}

uint64_t AggregateBlock::Word(std::size_t index) const {
  uint64_t word;
  std::memcpy(&word, bitmap_ + index * sizeof(word), sizeof(word));
  return word;
}

AggregateBlock::Run AggregateBlock::Find(IdRange range, Cursor& cursor, uint32_t* leaves) const {
  for (; cursor.word < range.begin / kWordBits; ++cursor.word) {
    cursor.cells_before += static_cast<uint32_t>(std::popcount(Word(cursor.word)));
  }
  Run run{cursor.cells_before, 0};
  uint32_t* next = leaves;
  for (std::size_t index = cursor.word; index * kWordBits < range.end; ++index) {
    uint64_t word = Word(index);
    const auto base = static_cast<uint32_t>(index * kWordBits);
    if (range.begin > base) {
      const uint64_t before = word & ((uint64_t{1} << (range.begin - base)) - 1);
      run.first += static_cast<uint32_t>(std::popcount(before));
      word ^= before;
    }
    if (range.end - base < kWordBits) word &= (uint64_t{1} << (range.end - base)) - 1;
    for (; word != 0; word &= word - 1) {
      *next++ = base + static_cast<uint32_t>(std::countr_zero(word));
    }
  }
  run.count = static_cast<uint32_t>(next - leaves);
  return run;
}

void AggregateBlock::Values(std::size_t column, Run run, int64_t* values) const {
  const Column& from = columns_[column];
  Unpack({from.values, from.low, from.width}, run.first, run.count, values);
}

void AggregateBlock::Validity(std::size_t column, Run run, int64_t* valid) const {
  Unpack({columns_[column].validity, 0, 1}, run.first, run.count, valid);
}

}  // namespace vok::olap
