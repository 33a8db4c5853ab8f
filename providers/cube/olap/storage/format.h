// The fixed parts of a cube file, as they lie in it. docs/cube-file.md describes the whole.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace vok::olap {

static_assert(std::endian::native == std::endian::little,
              "cube files are little-endian and are read in place");

inline constexpr std::array<char, 8> kFileMagic = {'V', 'o', 'k', 'C', 'u', 'b', 'e', '\x1a'};
inline constexpr std::array<char, 8> kEndMagic = {'V', 'o', 'k', 'C', 'u', 'b', 'E', '\x1a'};
inline constexpr uint32_t kFormatVersion = 2;
/// Of files whose facts stay in a database.
inline constexpr uint32_t kLiveVersion = 3;
/// Files of version 1 have neither aggregates nor counts of different values.
inline constexpr uint32_t kOldestVersion = 1;
inline constexpr uint32_t kNoBlock = 0xFFFFFFFF;
/// Blocks begin and end at multiples of this; what lies between their content and their end is 0.
inline constexpr std::size_t kBlockAlignment = 8;
inline constexpr uint32_t kChunkRows = 16384;
/// Levels of a hierarchy, and hierarchies of a cube: readers step from one to the next by
/// recursion.
inline constexpr std::size_t kMostLevels = 128;
inline constexpr std::size_t kMostHierarchies = 256;

struct FileHeader {
  std::array<char, 8> magic;
  uint32_t version;
  uint32_t reserved;
};
static_assert(sizeof(FileHeader) == 16);

struct BlockEntry {
  uint64_t offset;
  uint64_t length;
  uint64_t checksum;  ///< XXH3-64 of all `length` bytes
};
static_assert(sizeof(BlockEntry) == 24);

/// The last bytes of the file.
struct FileFooter {
  uint64_t directory_offset;
  uint64_t block_count;
  uint64_t directory_checksum;
  uint64_t file_length;
  uint32_t catalog_block;
  uint32_t version;
  uint64_t reserved;
  uint64_t checksum;  ///< XXH3-64 of the footer's bytes before this field
  std::array<char, 8> magic;
};
static_assert(sizeof(FileFooter) == 64 && offsetof(FileFooter, checksum) == 48);

/// One column's values of one chunk: `low` + the packed number, `width` bits each.
struct ChunkEntry {
  int64_t low;
  int64_t high;
  uint32_t block;  ///< `kNoBlock` when all values are equal
  uint32_t width;
};
static_assert(sizeof(ChunkEntry) == 24);

/// Sections of a cube in the catalog. Readers pass over sections that they do not know.
enum class SectionTag : uint32_t {
  kEnd = 0,
  kStructure = 1,
  kFacts = 2,
  kAggregates = 3,
  kCalculated = 4,
  kOrigin = 5,
  kLive = 6  ///< in place of facts
};

enum class NumberKind : uint8_t { kDecimal = 0, kDouble = 1 };

/// How a stored value column is to be read.
struct ValueFormat {
  NumberKind kind = NumberKind::kDecimal;
  uint8_t scale = 0;       ///< decimal places of a `kDecimal` column
  bool is_narrow = false;  ///< the absolute values add up to less than 2^63
  bool has_nulls = false;  ///< a column of 1 (value) and 0 (NULL) belongs to it
};
inline constexpr uint8_t kMaxScale = 22;

}  // namespace vok::olap
