// Values as the command line prints and reads them, the same in every country.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/date.h"

namespace vok::cli {

/// "2024-01-31", or "" for the zero date.
std::string IsoDate(Date date);
/// "2024-01-31T16:32:10".
std::string IsoDateTime(Date date);

/// The date that "2024-01-31" means; nothing for a text of another form and for no date.
std::optional<Date> ParseIsoDate(std::string_view text);

/// The text as a field of RFC 4180 CSV.
std::string CsvField(const std::string& text);

/// The text in double quotes, for a message.
std::string Quoted(std::string_view text);

}  // namespace vok::cli
