// Prefix codes that fit how often each symbol occurs, as the deflate format wants them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vok::xlsx {

/// One symbol's code, first bit lowest. No bits: the symbol has none.
struct PrefixCode {
  uint16_t code = 0;
  uint8_t bits = 0;
};

/// The best codes of at most `longest` bits for symbols that occur `counts[i]` times; both lists
/// have the same length, at most 288. Fewer than two symbols in use get others beside them, since a
/// reader wants a complete set of codes.
void MakePrefixCodes(std::span<const uint32_t> counts, unsigned longest,
                     std::span<PrefixCode> codes);

}  // namespace vok::xlsx
