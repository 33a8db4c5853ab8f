#include "providers/workbook/xlsx/huffman.h"

#include <algorithm>
#include <array>

namespace vok::xlsx {
namespace {

constexpr std::size_t kMostSymbols = 288;
constexpr std::size_t kMostBits = 15;

struct Leaf {
  uint64_t count;
  uint16_t symbol;
};

using Leaves = std::array<Leaf, kMostSymbols>;
using Lengths = std::array<unsigned, kMostBits + 1>;  // how many codes of each length

/// Symbols in use, the rarest first; at least two.
std::size_t Sorted(std::span<const uint32_t> counts, Leaves& leaves) {
  std::size_t size = 0;
  for (std::size_t symbol = 0; symbol < counts.size(); ++symbol) {
    if (counts[symbol] > 0) leaves[size++] = {counts[symbol], static_cast<uint16_t>(symbol)};
  }
  for (uint16_t symbol = 0; size < 2; ++symbol) {
    if (counts[symbol] == 0) leaves[size++] = {0, symbol};
  }
  std::sort(leaves.begin(), leaves.begin() + static_cast<std::ptrdiff_t>(size),
            [](const Leaf& a, const Leaf& b) {
              return a.count != b.count ? a.count < b.count : a.symbol < b.symbol;
            });
  return size;
}

/// The depth of each leaf when the two rarest are joined again and again.
void FindDepths(const Leaves& leaves, std::size_t size, std::array<uint16_t, kMostSymbols>& depth) {
  std::array<uint64_t, 2 * kMostSymbols> count{};
  std::array<uint16_t, 2 * kMostSymbols> parent{}, level{};
  for (std::size_t i = 0; i < size; ++i) count[i] = leaves[i].count;
  const std::size_t root = 2 * size - 2;
  std::size_t leaf = 0, joined = size;
  for (std::size_t node = size; node <= root; ++node) {
    for (int child = 0; child < 2; ++child) {
      const bool take_leaf = leaf < size && (joined >= node || count[leaf] <= count[joined]);
      const std::size_t taken = take_leaf ? leaf++ : joined++;
      count[node] += count[taken];
      parent[taken] = static_cast<uint16_t>(node);
    }
  }
  for (std::size_t node = root; node-- > 0;) {
    level[node] = static_cast<uint16_t>(level[parent[node]] + 1);
    if (node < size) depth[node] = level[node];
  }
}

/// Shortens what is too long and lengthens others, until the codes fit again.
void Limit(Lengths& lengths, unsigned longest) {
  uint32_t used = 0;  // of 2^longest
  for (unsigned bits = 1; bits <= longest; ++bits) used += lengths[bits] << (longest - bits);
  for (; used > 1U << longest; --used) {
    --lengths[longest];
    unsigned bits = longest - 1;
    while (lengths[bits] == 0) --bits;
    --lengths[bits];
    lengths[bits + 1] += 2;
  }
}

uint16_t Reversed(uint32_t code, unsigned bits) {
  uint32_t reversed = 0;
  for (unsigned i = 0; i < bits; ++i) reversed |= (code >> i & 1) << (bits - 1 - i);
  return static_cast<uint16_t>(reversed);
}

/// Codes of one length follow each other in the order of their symbols.
void AssignCodes(const Lengths& lengths, std::span<PrefixCode> codes) {
  std::array<uint32_t, kMostBits + 2> next{};
  for (unsigned bits = 1; bits <= kMostBits; ++bits) {
    next[bits + 1] = (next[bits] + lengths[bits]) << 1;
  }
  for (PrefixCode& code : codes) {
    if (code.bits > 0) code.code = Reversed(next[code.bits]++, code.bits);
  }
}

}  // namespace

void MakePrefixCodes(std::span<const uint32_t> counts, unsigned longest,
                     std::span<PrefixCode> codes) {
  Leaves leaves;
  const std::size_t size = Sorted(counts, leaves);
  std::array<uint16_t, kMostSymbols> depth{};
  FindDepths(leaves, size, depth);
  Lengths lengths{};
  for (std::size_t i = 0; i < size; ++i) ++lengths[std::min<unsigned>(depth[i], longest)];
  Limit(lengths, longest);
  std::fill(codes.begin(), codes.end(), PrefixCode());
  std::size_t leaf = 0;
  for (unsigned bits = longest; bits > 0; --bits) {
    for (unsigned i = 0; i < lengths[bits]; ++i) {
      codes[leaves[leaf++].symbol].bits = static_cast<uint8_t>(bits);
    }
  }
  AssignCodes(lengths, codes);
}

}  // namespace vok::xlsx
