// Text files as the platform's editors leave them, and texts of its code pages.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vok {

/// The text in UTF-8, without its byte order mark: UTF-16LE and UTF-8 are told by theirs, all else
/// is taken for UTF-8.
std::string TextOfBytes(std::string_view bytes);

/// UTF-16LE as UTF-8; an odd last byte does not count.
std::string TextOfUtf16(std::string_view bytes);

/// Cuts the next line off, without its CR LF, LF or CR.
std::string_view TakeLine(std::string_view& rest);

/// Blanks and tabs removed at both ends.
std::string_view TrimSpace(std::string_view text);

/// The number of the code page that programs older than Unicode use for a language: 1255 for "he".
int CodePageOf(std::string_view language);

/// The text as UTF-8. Nothing for a code page that ICU does not have, and for bytes that are no
/// text in it.
std::optional<std::string> TextOfCodePage(std::string_view bytes, int code_page);

}  // namespace vok
