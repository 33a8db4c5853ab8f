// Values and documents as the command line prints and reads them, the same in every country.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
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

/// Entries stay in the order in which they were put in.
using Json = nlohmann::ordered_json;

/// Indented by two blanks, with a line end. Bytes that are not UTF-8, as names of files may have
/// them, become U+FFFD: JSON has no other way to write them. All that a terminal might obey is
/// escaped.
std::string JsonText(const Json& document);

/// A text of a document as a terminal shows it, on one line.
std::string ShownText(const Json& text);

/// Cells of the terminal that the text takes: none for marks that stand on the letter before
/// (Hebrew points, accents), two for wide letters and pictures.
std::size_t CellWidth(std::string_view text);

}  // namespace vok::cli
