// Text files as the platform's editors leave them.
#pragma once

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

}  // namespace vok
