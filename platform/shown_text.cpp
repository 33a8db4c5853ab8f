#include "platform/shown_text.h"

#include <algorithm>
#include <array>

#include "platform/text.h"
#include "platform/utf8.h"

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

std::string WithoutUsersOfAddresses(std::string_view text) {
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

/// Without what stands before the host in "user:password@host", where a scheme or its slashes were
/// forgotten.
std::string WithoutBareUsers(std::string_view text) {
  constexpr std::string_view kEnds = "/\\ \t\r\n\"'(),;<>";
  std::string shown;
  while (!text.empty()) {
    const std::size_t length = std::min(text.find_first_of(kEnds), text.size() - 1) + 1;
    const std::string_view word = text.substr(0, length);
    const std::size_t at = word.rfind('@');
    const bool is_before_host = at != word.npos && word.find(':') < at &&
                                kEnds.find(word[std::min(at + 1, length - 1)]) == kEnds.npos;
    if (is_before_host) shown += "...";
    shown += word.substr(is_before_host ? at : 0);
    text.remove_prefix(length);
  }
  return shown;
}

/// Where the value of a password ends. It may be quoted, with quotes in it written twice.
std::size_t EndOfPassword(std::string_view text, std::size_t start) {
  constexpr std::string_view kQuotes = "'\"";
  const bool is_quoted = start < text.size() && kQuotes.find(text[start]) != kQuotes.npos;
  for (std::size_t end = start; is_quoted;) {
    end = text.find(text[start], end + 1);
    if (end == text.npos) break;
    if (text.substr(end + 1, 1) != text.substr(start, 1)) return end + 1;
    ++end;
  }
  return std::min(text.find_first_of("&'\" \t\r\n", start + (is_quoted ? 1 : 0)), text.size());
}

/// With "..." for each value of "password=", as in a list of options.
std::string WithoutPasswords(std::string_view text) {
  constexpr std::string_view kKey = "password=";
  const std::string lower = LowerAscii(text);
  std::string shown;
  std::size_t start = 0;
  for (std::size_t key = 0; (key = lower.find(kKey, start)) != lower.npos;) {
    const std::size_t value = key + kKey.size();
    shown += text.substr(start, value - start);
    start = EndOfPassword(text, value);
    if (start != value) shown += "...";
  }
  return shown.append(text.substr(start));
}

}  // namespace

std::string OneLine(std::string_view text) {
  std::string line;
  while (!text.empty()) line += Shown(TakeLetter(text));
  return line;
}

std::string Excerpt(std::string_view text) { return OneLine(Utf16Prefix(text, kExcerptUnits)); }

std::string WithoutUsers(std::string_view text) {
  return WithoutPasswords(WithoutBareUsers(WithoutUsersOfAddresses(text)));
}

}  // namespace vok
