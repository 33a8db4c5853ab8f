#include "cli/terminal_text.h"

#include <algorithm>
#include <array>
#include <span>

#include "platform/shown_text.h"

namespace vok::cli {
namespace {

struct Range {
  char32_t first, last;
};

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

}  // namespace

std::size_t CellWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const char32_t letter = TakeLetter(text).code;
    width += IsIn(kMarks, letter) ? 0 : IsIn(kWide, letter) ? 2 : 1;
  }
  return width;
}

}  // namespace vok::cli
