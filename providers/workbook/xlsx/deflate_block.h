// Bytes on their way into a compressed part, one block of it at a time.
//
// A general compressor looks for what repeats. The writer of a sheet knows it: the marks around a
// cell are those of the cell before. So each run of bytes is said to be new, a repetition, or a
// text to be looked for among the earlier ones. A block needs nothing of the others and ends on a
// whole byte: blocks that were made at the same time are joined as they are.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "providers/workbook/xlsx/byte_buffer.h"
#include "providers/workbook/xlsx/huffman.h"

namespace vok::xlsx {

/// A run of bytes that comes again and again, at most 258 of them, and where it came last. What
/// stood before it there, and stands before it again, is taken with it.
struct Repeated {
  std::string bytes;
  uint32_t block = 0;  ///< the block of that
  std::size_t at = 0;
};

class DeflateBlock {
 public:
  DeflateBlock();

  void Add(Repeated& run);
  /// Bytes that are new, such as digits.
  void AddNew(std::string_view bytes);
  /// Bytes that may have come before.
  void AddText(std::string_view bytes);

  /// What was added since the last `Finish`.
  std::string_view Expanded() const { return bytes_.View(); }
  /// Appends the block, compressed, to `out` and starts a new one. `last`: it ends the part.
  void Finish(bool last, ByteBuffer& out);

 private:
  static constexpr std::size_t kSymbols = 286;  // literals, the end, lengths
  static constexpr std::size_t kDistances = 30;
  static constexpr unsigned kHashBits = 13;

  void Literal(char byte) {
    tokens_.push_back(static_cast<unsigned char>(byte));
    ++symbol_counts_[static_cast<unsigned char>(byte)];
  }
  void Literals(std::string_view bytes) {
    for (const char byte : bytes) Literal(byte);
  }
  void Match(std::size_t length, std::size_t distance);
  /// The bytes at `at` stood at `earlier` too, and perhaps some before them that are literals now.
  void MatchFrom(std::size_t earlier, std::size_t at, std::size_t size);
  struct Found {
    std::size_t earlier = 0;
    std::size_t size = 0;  ///< how much of it is the same
  };
  /// What stands at `at`, where it stood last; remembers the place.
  Found Find(std::size_t at);
  /// Looks for what stands from `at` on among the earlier bytes.
  void Search(std::size_t at);
  /// Lets the match before `at` go on as far as the bytes do; how far, when it is `least` or more.
  std::size_t Extend(std::size_t at, std::size_t least);
  /// Remembers what stands at `at`; where it stood before, + 1, or 0.
  std::size_t Remember(std::size_t at);
  /// How much of the text at `at` stood at `earlier` too, `most` at most.
  std::size_t Common(std::size_t earlier, std::size_t at, std::size_t most) const;
  void AppendCoded(bool last, ByteBuffer& out);
  void AppendStored(bool last, ByteBuffer& out) const;

  ByteBuffer bytes_;
  std::vector<uint32_t> tokens_;  // a byte, or a length and a distance
  std::array<uint32_t, kSymbols> symbol_counts_{};
  std::array<uint32_t, kDistances> distance_counts_{};
  std::array<uint32_t, std::size_t{1} << kHashBits> places_{};  // + 1, by what stands there
  uint32_t block_ = 1;
};

}  // namespace vok::xlsx
