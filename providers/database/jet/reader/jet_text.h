// The texts of Jet 4: UTF-16, or, after the mark FF FE, with its low bytes alone.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vok::jet {

/// The text in UTF-8. After the mark a zero byte changes between single bytes and whole units.
/// Nothing for bytes that are not such a text: half a unit, half a character.
std::optional<std::string> TextOf(std::string_view bytes);

}  // namespace vok::jet
