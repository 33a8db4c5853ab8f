#include "system/posix/ini_text.h"

#include "system/posix/unicode_text.h"

namespace vok {
namespace {

std::string_view Unquoted(std::string_view value) {
  const bool quoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                      value.back() == value.front();
  return quoted ? value.substr(1, value.size() - 2) : value;
}

}  // namespace

std::string IniValue(const Locale& locale, std::string_view bytes, const std::string& section,
                     const std::string& key) {
  const std::string text = TextOfBytes(bytes.substr(0, kLargestIniText));
  bool inside = false;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view line = TrimSpace(TakeLine(rest));
    if (line.starts_with('[')) {
      if (inside) return {};
      const std::size_t end = line.find(']');
      const auto name = line.substr(1, end == std::string_view::npos ? end : end - 1);
      inside = EqualNoCase(locale, TrimSpace(name), section);
      continue;
    }
    const std::size_t equals = line.find('=');
    if (!inside || line.starts_with(';') || equals == std::string_view::npos) continue;
    if (EqualNoCase(locale, TrimSpace(line.substr(0, equals)), key)) {
      return std::string(Unquoted(TrimSpace(line.substr(equals + 1))));
    }
  }
  return {};
}

}  // namespace vok
