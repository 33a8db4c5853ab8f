// A calendar that is opened at a field for a date.
#pragma once

#include <optional>

#include "platform/date.h"
#include "ui/win32/controls_header.h"

namespace vok::windows {

/// Lets the user pick a date, beginning with `shown`; nothing when it was given up.
std::optional<Date> PickDate(HWND field, std::optional<Date> shown);

}  // namespace vok::windows
