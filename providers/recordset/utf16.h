// UTF-16LE as UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vok::recordset {

/// Nothing when the bytes are no UTF-16LE: an odd count, half a pair of surrogates.
std::optional<std::string> Utf8OfUtf16(std::string_view bytes);

}  // namespace vok::recordset
