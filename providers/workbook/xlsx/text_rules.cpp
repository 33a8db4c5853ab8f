#include "providers/workbook/xlsx/text_rules.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>

#include "platform/utf8.h"

namespace vok::xlsx {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
constexpr std::size_t kEscapeSize = 7;  // _xHHHH_

uint8_t Byte(std::string_view text, std::size_t at) { return static_cast<uint8_t>(text[at]); }

bool IsSurrogate(std::string_view text) {
  return text.size() > 2 && Byte(text, 0) == 0xED && Byte(text, 1) >= 0xA0 &&
         !StartsCharacter(text[1]) && !StartsCharacter(text[2]);
}

/// The value of "_xHHHH" at the front, the final "_" not looked at.
std::optional<uint16_t> EscapeValue(std::string_view text) {
  if (text.size() < kEscapeSize - 1 || text[0] != '_' || text[1] != 'x') return std::nullopt;
  uint16_t value = 0;
  const char* end = text.data() + kEscapeSize - 1;
  const auto parsed = std::from_chars(text.data() + 2, end, value, 16);
  if (parsed.ec != std::errc() || parsed.ptr != end) return std::nullopt;
  return value;
}

/// The code that must be written as an escape at the front of the text: a control character XML
/// cannot carry (and CR, which it would fold), U+FFFE and U+FFFF.
std::optional<uint16_t> ForbiddenCode(std::string_view text) {
  if (text.empty()) return std::nullopt;
  const uint8_t lead = Byte(text, 0);
  if (lead < 0x20 && lead != '\t' && lead != '\n') return lead;
  if (lead == 0xEF && text.starts_with("\xEF\xBF") && text.size() > 2 && Byte(text, 2) >= 0xBE) {
    return static_cast<uint16_t>(0xFFC0 | (Byte(text, 2) & 0x3F));
  }
  return std::nullopt;
}

/// True when a reader would take the text at the front, as it will be written, for an escape.
bool LooksEscaped(std::string_view text) {
  if (!EscapeValue(text)) return false;
  const std::string_view rest = text.substr(kEscapeSize - 1);
  return rest.starts_with('_') || ForbiddenCode(rest);
}

void AppendEscape(ByteBuffer& xml, uint16_t code) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const char escape[] = {'_',
                         'x',
                         kDigits[code >> 12],
                         kDigits[code >> 8 & 15],
                         kDigits[code >> 4 & 15],
                         kDigits[code & 15],
                         '_'};
  xml.Append({escape, kEscapeSize});
}

struct Substitute {
  std::size_t bytes;  // of the text that it stands for
  std::string_view entity;
  uint16_t escaped = 0;  // written as an escape when there is no entity
};

/// What is written instead of the character at the front; nothing: the character itself.
std::optional<Substitute> SubstituteFor(std::string_view text) {
  switch (text[0]) {
    case '<':
      return Substitute{1, "&lt;"};
    case '>':
      return Substitute{1, "&gt;"};
    case '&':
      return Substitute{1, "&amp;"};
    case '"':
      return Substitute{1, "&quot;"};
    case '_':
      if (LooksEscaped(text)) return Substitute{1, {}, '_'};
      return std::nullopt;
    default:
      const auto code = ForbiddenCode(text);
      if (!code) return std::nullopt;
      return Substitute{*code < 0x20 ? std::size_t{1} : std::size_t{3}, {}, *code};
  }
}

}  // namespace

std::string ToUtf8(std::string_view bytes) {
  std::string text;
  while (!bytes.empty()) {
    std::size_t size = CharacterSize(bytes);
    if (size > 0) {
      text += bytes.substr(0, size);
    } else {
      text += kReplacement;
      size = IsSurrogate(bytes) ? 3 : 1;
    }
    bytes.remove_prefix(size);
  }
  return text;
}

bool HasLookalike(std::string_view text) {
  std::size_t at = text.find('_');
  while (at != std::string_view::npos && !LooksEscaped(text.substr(at)))
    at = text.find('_', at + 1);
  return at != std::string_view::npos;
}

bool IsPlain(std::string_view text) {
  return std::none_of(text.begin(), text.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || c == '<' || c == '>' || c == '&' || c == '"' || c == '_' || byte == 0xEF;
  });
}

void AppendXmlText(ByteBuffer& xml, std::string_view text) {
  std::size_t plain = 0;  // start of the bytes that are copied as they are
  for (std::size_t at = 0; at < text.size();) {
    const auto substitute = SubstituteFor(text.substr(at));
    if (!substitute) {
      ++at;
      continue;
    }
    xml.Append(text.substr(plain, at - plain));
    if (substitute->entity.empty()) {
      AppendEscape(xml, substitute->escaped);
    } else {
      xml.Append(substitute->entity);
    }
    at += substitute->bytes;
    plain = at;
  }
  xml.Append(text.substr(plain));
}

bool NeedsPreserve(std::string_view text) {
  const auto is_blank = [](char c) { return c == ' ' || c == '\t' || c == '\n'; };
  return !text.empty() && (is_blank(text.front()) || is_blank(text.back()) ||
                           text.find_first_of("\t\n") != std::string_view::npos);
}

}  // namespace vok::xlsx
