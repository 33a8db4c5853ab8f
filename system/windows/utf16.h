// Texts at the operating system's edge: UTF-16 for its wide calls, the user's code page for its
// ANSI ones. Case folding by the system's own tables.
#pragma once

#include <string>
#include <string_view>

namespace vok::windows {

/// Bytes that are not UTF-8 become U+FFFD.
std::wstring Utf16(std::string_view utf8);
/// Halves of surrogate pairs that stand alone become U+FFFD.
std::string Utf8(std::wstring_view utf16);

/// In the user's code page; a character that it lacks becomes "?" or one that looks like it.
std::string AnsiText(std::string_view utf8);
/// Whether the user's code page has all of its characters.
bool HasAnsiForm(std::string_view utf8);
std::string Utf8OfAnsi(std::string_view ansi);

/// Letter by letter, the same in every country; of the letters whose folded form is longer, the
/// German sharp s alone becomes "ss".
std::string FoldedCase(std::string_view text);

}  // namespace vok::windows
