// What becomes of a text in a workbook file.
//
//   bytes that are not UTF-8        each becomes U+FFFD
//   surrogate encoded in 3 bytes   becomes one U+FFFD
//   control character, U+FFFE/F    kept, written as the format's own escape _xHHHH_
//   text that looks like an escape kept, its first "_" is written as _x005F_
//   TAB, line feed, outer blanks   kept (xml:space="preserve")
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "providers/workbook/xlsx/byte_buffer.h"

namespace vok::xlsx {

/// Longest text of a cell, in UTF-16 units.
inline constexpr std::size_t kMaxTextUnits = 32'767;

/// Valid UTF-8, by the rules above.
std::string ToUtf8(std::string_view bytes);

/// Whether a text holds what looks like the format's own escape.
bool HasLookalike(std::string_view text);
/// Whether all of a clean text stands in XML as it is.
bool IsPlain(std::string_view text);
/// Appends a clean text as XML character data or attribute value, with the format's escapes.
void AppendXmlText(ByteBuffer& xml, std::string_view text);
/// True when XML readers would drop or fold blanks of the text unless told to preserve them.
bool NeedsPreserve(std::string_view text);

}  // namespace vok::xlsx
