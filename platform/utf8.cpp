#include "platform/utf8.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace vok {
namespace {

uint8_t Byte(std::string_view text, std::size_t at) { return static_cast<uint8_t>(text[at]); }

bool IsContinuation(std::string_view text, std::size_t at, uint8_t low = 0x80,
                    uint8_t high = 0xBF) {
  return at < text.size() && Byte(text, at) >= low && Byte(text, at) <= high;
}

/// Bytes of plain ASCII at the front, eight at a time; not all of the last seven.
std::size_t AsciiPrefix(std::string_view text) {
  static_assert(std::endian::native == std::endian::little, "the first byte is the lowest");
  std::size_t at = 0;
  for (; at + 8 <= text.size(); at += 8) {
    uint64_t eight;
    std::memcpy(&eight, text.data() + at, 8);
    const uint64_t beyond = eight & 0x8080808080808080u;
    if (beyond != 0) return at + static_cast<std::size_t>(std::countr_zero(beyond)) / 8;
  }
  return at;
}

}  // namespace

std::size_t CharacterSize(std::string_view text) {
  const uint8_t lead = Byte(text, 0);
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return IsContinuation(text, 1) ? 2 : 0;
  if (lead >= 0xE0 && lead <= 0xEF) {
    const uint8_t low = lead == 0xE0 ? 0xA0 : 0x80;
    const uint8_t high = lead == 0xED ? 0x9F : 0xBF;
    return IsContinuation(text, 1, low, high) && IsContinuation(text, 2) ? 3 : 0;
  }
  if (lead >= 0xF0 && lead <= 0xF4) {
    const uint8_t low = lead == 0xF0 ? 0x90 : 0x80;
    const uint8_t high = lead == 0xF4 ? 0x8F : 0xBF;
    const bool whole =
        IsContinuation(text, 1, low, high) && IsContinuation(text, 2) && IsContinuation(text, 3);
    return whole ? 4 : 0;
  }
  return 0;
}

bool IsUtf8(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const uint8_t lead = Byte(text, at);
    if (lead < 0x80) {
      at += std::max<std::size_t>(1, AsciiPrefix(text.substr(at)));
    } else if (lead >= 0xC2 && lead <= 0xDF && IsContinuation(text, at + 1)) {
      at += 2;  // most letters beyond ASCII; `CharacterSize` knows all
    } else {
      const std::size_t size = CharacterSize(text.substr(at));
      if (size == 0) return false;
      at += size;
    }
  }
  return true;
}

Letter TakeLetter(std::string_view& text) {
  const std::size_t size = CharacterSize(text);
  char32_t code = Byte(text, 0);
  if (size > 1) {
    code &= 0xFFU >> (size + 1);
    for (std::size_t at = 1; at < size; ++at) code = code << 6 | (Byte(text, at) & 0x3FU);
  }
  const Letter letter{code, text.substr(0, size > 0 ? size : 1), size > 0};
  text.remove_prefix(letter.bytes.size());
  return letter;
}

void AppendUtf8(std::string& text, char32_t code) {
  const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
  const auto tail = [&](int shift) { append(0x80 | (code >> shift & 0x3F)); };
  if (code < 0x80) {
    append(code);
  } else if (code < 0x800) {
    append(0xC0 | code >> 6);
    tail(0);
  } else if (code < 0x10000) {
    append(0xE0 | code >> 12);
    tail(6);
    tail(0);
  } else {
    append(0xF0 | code >> 18);
    tail(12);
    tail(6);
    tail(0);
  }
}

}  // namespace vok
