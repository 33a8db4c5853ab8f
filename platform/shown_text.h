// Texts from outside, such as names of cubes and words of servers, as people may see them.
#pragma once

#include <string>
#include <string_view>

namespace vok {

/// Characters that would move a terminal's cursor, end the line or turn its direction are written
/// out: "\t", "\n", "\r", else "\u001b"; a byte that is not UTF-8 as "\xff".
std::string OneLine(std::string_view text);

/// The beginning of a text of any length: `OneLine` of at most 160 UTF-16 units.
std::string Excerpt(std::string_view text);

/// The text with no user's name or password in its addresses, mistyped ones too, and no value of a
/// "password=". What follows a scheme, such as "http://", is taken for a host with or without a
/// port, or else loses all up to its last "@": rather too much than too little.
std::string WithoutUsers(std::string_view text);

}  // namespace vok
