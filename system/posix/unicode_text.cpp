#include "system/posix/unicode_text.h"

#include <unicode/unistr.h>

#include <algorithm>

namespace vok {

std::string TextOfBytes(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) return std::string(bytes.substr(3));
  if (bytes.starts_with("\xFF\xFE")) return TextOfUtf16(bytes.substr(2));
  return std::string(bytes);
}

std::string TextOfUtf16(std::string_view bytes) {
  icu::UnicodeString units;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const auto low = static_cast<unsigned char>(bytes[at]);
    const auto high = static_cast<unsigned char>(bytes[at + 1]);
    units.append(static_cast<char16_t>(high << 8 | low));
  }
  std::string text;
  units.toUTF8String(text);
  return text;
}

std::string_view TakeLine(std::string_view& rest) {
  const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
  const std::string_view line = rest.substr(0, end);
  rest.remove_prefix(end);
  if (rest.starts_with("\r\n")) {
    rest.remove_prefix(2);
  } else if (!rest.empty()) {
    rest.remove_prefix(1);
  }
  return line;
}

std::string_view TrimSpace(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

}  // namespace vok
