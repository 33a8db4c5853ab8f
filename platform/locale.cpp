#include "platform/locale.h"

#include <algorithm>

namespace vok {
namespace {

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool EqualNoCase(const Locale& locale, std::string_view a, std::string_view b) {
  if (IsAscii(a) && IsAscii(b)) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
  }
  return locale.FoldCase(a) == locale.FoldCase(b);
}

}  // namespace vok
