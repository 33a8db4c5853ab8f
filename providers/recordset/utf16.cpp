#include "providers/recordset/utf16.h"

#include <cstdint>

namespace vok::recordset {
namespace {

uint32_t UnitAt(std::string_view bytes, std::size_t at) {
  return static_cast<uint32_t>(static_cast<unsigned char>(bytes[at])) |
         static_cast<uint32_t>(static_cast<unsigned char>(bytes[at + 1])) << 8;
}

void AppendUtf8(std::string& text, uint32_t character) {
  const auto tail = [&](int shift) {
    text += static_cast<char>(0x80 | ((character >> shift) & 0x3F));
  };
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | (character >> 6));
    tail(0);
  } else if (character < 0x10000) {
    text += static_cast<char>(0xE0 | (character >> 12));
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0 | (character >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

}  // namespace

std::optional<std::string> Utf8OfUtf16(std::string_view bytes) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::string text;
  text.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size(); at += 2) {
    uint32_t character = UnitAt(bytes, at);
    if (character >= 0xD800 && character < 0xE000) {
      if (character >= 0xDC00 || at + 4 > bytes.size()) return std::nullopt;
      const uint32_t low = UnitAt(bytes, at += 2);
      if (low < 0xDC00 || low >= 0xE000) return std::nullopt;
      character = 0x10000 + ((character - 0xD800) << 10) + (low - 0xDC00);
    }
    AppendUtf8(text, character);
  }
  return text;
}

}  // namespace vok::recordset
