// Numbers as texts, by a format such as "#,##0.00". Always with "." and ",", in every country.
#pragma once

#include <string>
#include <string_view>

namespace vok::olap {

/// `format`: up to three sections with ";" between, for positive, negative and zero; "0" a digit,
/// "#" a digit unless it is a leading or closing zero, "," between digits groups by thousands, "%"
/// shows hundredths, texts in quotes or after "\" as they are. Also "Standard" ("#,##0.00"),
/// "Fixed"
/// ("0.00"), "Percent" ("0.00%"), "Currency" ("#,##0.00"), "General Number" and "" (all digits).
/// Rounds halves away from zero, as written in decimals. "NaN", "Infinity", "-Infinity".
std::string FormatNumber(double number, std::string_view format);

}  // namespace vok::olap
