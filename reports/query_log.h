// The query log: texts of queries in named files of the log folder.
#pragma once

#include <cstdint>
#include <string>

#include "env/environment.h"
#include "platform/host.h"

namespace vok {

/// The text with line ends put in at its keywords.
std::string FormatQueryText(std::string text);

/// Writes `Text` to `LogName`.log in the "Log" folder of the settings folder, which is made when it
/// is missing; in the component's own folder when the registry names no settings folder. With
/// `Append` the entry is added after an empty line and a line end, else it replaces the file. With
/// `Format` the text is broken at its keywords, else into lines of `LineWidth` UTF-16 units (never
/// inside a character; a width below 1 breaks nothing). Failures are those of the files port.
void WriteQueryLog(const Host& host, Environment& environment, const std::string& Text,
                   const std::string& LogName, bool Append, int16_t LineWidth, bool Format);

}  // namespace vok
