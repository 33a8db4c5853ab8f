// Rules of texts that need no locale: counting UTF-16 units in UTF-8, as the platform does; blanks;
// the case of plain ASCII.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vok {

/// How many UTF-16 units the text has. Bytes that are not UTF-8 count one unit each.
std::size_t Utf16Length(std::string_view utf8);

/// The longest prefix of at most `units` UTF-16 units that cuts no character in two. It is never
/// empty for a text that is not and `units` > 0: a single character wider than `units` is kept
/// whole.
std::string_view Utf16Prefix(std::string_view utf8, std::size_t units);

/// Blanks removed at both ends (blanks alone, as the platform's Trim does).
std::string_view TrimBlanks(std::string_view text);

/// Lower case of A to Z; all else stays. For keywords: names of people's own go by the locale.
char LowerAscii(char letter);
std::string LowerAscii(std::string_view text);
/// Whether the texts differ in nothing but the case of A to Z.
bool EqualNoCaseAscii(std::string_view a, std::string_view b);

}  // namespace vok
