// Dates and times as files write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/date.h"

namespace vok::recordset {

/// The time on the zero date; nothing for one that no clock shows.
std::optional<Date> TimeOf(int hour, int minute, int second);

/// "2024-05-31", "2024-05-31T16:05:00" with any fraction of a second (it is dropped), "16:05:00".
std::optional<Date> ParseIsoDate(std::string_view text);
/// "2024-05-31T16:05:00", rounded to the second.
std::string IsoText(Date date);

}  // namespace vok::recordset
