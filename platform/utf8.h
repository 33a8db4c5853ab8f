// UTF-8: the one place that reads and writes its bytes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vok {

/// Bytes of the well-formed character at the front of a text that is not empty; 0 when there is
/// none: overlong forms, surrogates and codes above U+10FFFF are not characters.
std::size_t CharacterSize(std::string_view text);

bool IsUtf8(std::string_view text);

/// False for a byte within a character.
inline bool StartsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

/// A character of a text.
struct Letter {
  char32_t code;
  std::string_view bytes;
  bool valid;  ///< false: a byte that is not part of UTF-8, which is then the code
};

/// Takes the first letter off a text that is not empty.
Letter TakeLetter(std::string_view& text);

/// `code` is a character's: not a surrogate, and at most U+10FFFF.
void AppendUtf8(std::string& text, char32_t code);

}  // namespace vok
