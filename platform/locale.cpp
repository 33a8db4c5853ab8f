#include "platform/locale.h"

#include <algorithm>

#include "platform/text.h"

namespace vok {
namespace {

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

bool EqualNoCase(const Locale& locale, std::string_view a, std::string_view b) {
  if (IsAscii(a) && IsAscii(b)) return EqualNoCaseAscii(a, b);
  return locale.FoldCase(a) == locale.FoldCase(b);
}

}  // namespace vok
