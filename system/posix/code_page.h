// Texts of the Windows code pages.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vok {

/// The number of the code page that programs older than Unicode use for a language: 1255 for "he".
int CodePageOf(std::string_view language);

/// The text as UTF-8. Nothing for a code page that ICU does not have, and for bytes that are no
/// text in it.
std::optional<std::string> TextOfCodePage(std::string_view bytes, int code_page);

}  // namespace vok
