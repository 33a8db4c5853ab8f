#include "platform/shown_text.h"

#include <algorithm>
#include <array>

#include "platform/text.h"

namespace vok {
namespace {

constexpr std::size_t kExcerptUnits = 160;
constexpr std::string_view kHexDigits = "0123456789abcdef";

struct Range {
  char32_t first, last;
};

constexpr std::array<Range, 5> kControls = {
    {{0, 0x1F}, {0x7F, 0x9F}, {0x2028, 0x2029}, {0x202A, 0x202E}, {0x2066, 0x2069}}};

bool IsControl(char32_t code) {
  return std::any_of(kControls.begin(), kControls.end(), [code](const Range& range) {
    return code >= range.first && code <= range.last;
  });
}

std::string Hex(char32_t code, int digits) {
  std::string text;
  for (int i = digits; i-- > 0;) text += kHexDigits[code >> (4 * i) & 0xF];
  return text;
}

std::string Shown(const Letter& letter) {
  if (!letter.valid) return "\\x" + Hex(letter.code, 2);
  if (!IsControl(letter.code)) return std::string(letter.bytes);
  if (letter.code == '\t') return "\\t";
  if (letter.code == '\n') return "\\n";
  if (letter.code == '\r') return "\\r";
  return "\\u" + Hex(letter.code, 4);
}

/// What the first byte promises: the letter's bytes, and the least code that takes so many.
struct Promise {
  std::size_t bytes;
  char32_t least;
};

Promise PromiseOf(unsigned char lead) {
  if (lead >= 0xF0 && lead < 0xF5) return {4, 0x10000};
  if (lead >= 0xE0 && lead < 0xF0) return {3, 0x800};
  if (lead >= 0xC2 && lead < 0xE0) return {2, 0x80};
  return {1, 0};
}

bool IsScalar(char32_t code) { return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF); }

bool IsHostAndPort(std::string_view authority) {
  const std::size_t host = authority.find_last_of(":]@");  // an address of version 6 has brackets
  if (host == authority.npos || authority[host] == ']') return true;
  return authority[host] == ':' &&
         authority.find_first_not_of("0123456789", host + 1) == authority.npos &&
         authority.find('@') == authority.npos;
}

/// Of the path of a drive, such as "C:/x".
bool EndsDrive(std::string_view start) {
  const char before = start.size() < 2 ? ' ' : LowerAscii(start[start.size() - 2]);
  return before < 'a' || before > 'z';
}

}  // namespace

Letter TakeLetter(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const Promise promise = PromiseOf(lead);
  char32_t code = lead & (0xFFU >> (promise.bytes + 1));
  bool valid = promise.bytes > 1 && promise.bytes <= text.size();
  for (std::size_t i = 1; valid && i < promise.bytes; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    valid = (byte & 0xC0) == 0x80;
    code = code << 6 | (byte & 0x3F);
  }
  valid = valid && code >= promise.least && IsScalar(code);
  const Letter letter = valid ? Letter{code, text.substr(0, promise.bytes), true}
                              : Letter{lead, text.substr(0, 1), lead < 0x80};
  text.remove_prefix(letter.bytes.size());
  return letter;
}

std::string OneLine(std::string_view text) {
  std::string line;
  while (!text.empty()) line += Shown(TakeLetter(text));
  return line;
}

std::string Excerpt(std::string_view text) { return OneLine(Utf16Prefix(text, kExcerptUnits)); }

std::string WithoutUsers(std::string_view text) {
  constexpr std::string_view kMark = ":/";  // mistyped addresses have one slash, or three
  std::string shown;
  for (std::size_t mark = text.find(kMark); mark != text.npos; mark = text.find(kMark)) {
    const std::size_t start = std::min(text.find_first_not_of('/', mark + 1), text.size());
    const bool drive = EndsDrive(text.substr(0, mark));
    shown += text.substr(0, start);
    text.remove_prefix(start);
    if (drive || IsHostAndPort(text.substr(0, text.find_first_of("/?#;\"' \t\r\n")))) continue;
    const std::size_t user = text.substr(0, text.find(kMark)).rfind('@');
    text.remove_prefix(user == text.npos ? 0 : user + 1);
  }
  return shown.append(text);
}

}  // namespace vok
