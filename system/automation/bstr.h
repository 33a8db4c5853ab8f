// Counted texts, as automation carries them.
#pragma once

#include <string>
#include <string_view>

#include "system/automation/ole.h"

namespace vok::windows {

/// A new text, the caller's to free.
BSTR NewBstr(std::string_view utf8);
/// A null text is the empty one.
std::string FromBstr(BSTR text);
/// The same, and frees it.
std::string TakeBstr(BSTR text);

}  // namespace vok::windows
