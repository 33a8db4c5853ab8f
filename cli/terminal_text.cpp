#include "cli/terminal_text.h"

#include <algorithm>
#include <array>
#include <span>

namespace vok::cli {
namespace {

struct Range {
  char32_t first, last;
};

constexpr std::array<Range, 5> kControls = {
    {{0, 0x1F}, {0x7F, 0x9F}, {0x2028, 0x2029}, {0x202A, 0x202E}, {0x2066, 0x2069}}};
constexpr std::array<Range, 12> kMarks = {{{0x300, 0x36F},
                                           {0x483, 0x489},
                                           {0x591, 0x5BD},
                                           {0x5BF, 0x5BF},
                                           {0x5C1, 0x5C2},
                                           {0x5C4, 0x5C5},
                                           {0x5C7, 0x5C7},
                                           {0x610, 0x61A},
                                           {0x64B, 0x65F},
                                           {0x200B, 0x200F},
                                           {0x20D0, 0x20F0},
                                           {0xFE00, 0xFE0F}}};
constexpr std::array<Range, 8> kWide = {{{0x1100, 0x115F},
                                         {0x2E80, 0xA4CF},
                                         {0xAC00, 0xD7A3},
                                         {0xF900, 0xFAFF},
                                         {0xFE30, 0xFE6F},
                                         {0xFF00, 0xFF60},
                                         {0x1F300, 0x1FAFF},
                                         {0x20000, 0x3FFFD}}};

bool IsIn(std::span<const Range> ranges, char32_t letter) {
  return std::any_of(ranges.begin(), ranges.end(), [letter](const Range& range) {
    return letter >= range.first && letter <= range.last;
  });
}

/// Takes a letter off the text. A byte that begins none counts as one.
char32_t NextLetter(std::string_view& text, std::string_view& bytes) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  bytes = text.substr(0, length);
  text.remove_prefix(bytes.size());
  if (length == 1) return lead < 0x80 ? lead : 0xFFFD;
  char32_t letter = lead & (0x7FU >> length);
  for (const char byte : bytes.substr(1)) letter = letter << 6 | (byte & 0x3F);
  return letter;
}

std::string WrittenOut(char32_t control) {
  if (control == '\t') return "\\t";
  if (control == '\n') return "\\n";
  if (control == '\r') return "\\r";
  std::string text = "\\u";
  for (int shift = 12; shift >= 0; shift -= 4) text += "0123456789abcdef"[control >> shift & 0xF];
  return text;
}

}  // namespace

std::string OneLine(std::string_view text) {
  std::string line;
  while (!text.empty()) {
    std::string_view bytes;
    const char32_t letter = NextLetter(text, bytes);
    line += IsIn(kControls, letter) ? WrittenOut(letter) : std::string(bytes);
  }
  return line;
}

std::size_t CellWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    std::string_view bytes;
    const char32_t letter = NextLetter(text, bytes);
    width += IsIn(kMarks, letter) ? 0 : IsIn(kWide, letter) ? 2 : 1;
  }
  return width;
}

}  // namespace vok::cli
