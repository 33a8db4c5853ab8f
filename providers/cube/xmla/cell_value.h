// Values of cells as XML schema writes them.
#pragma once

#include <optional>
#include <string_view>

#include "platform/cube.h"

namespace vok::xmla {

/// A cell's value; for texts and errors the text itself stands elsewhere.
struct CellValue {
  CellState state = CellState::kEmpty;
  double number = 0;  ///< whole and within 32 bits for kInteger, 0 or 1 for kLogical
};

/// Every form of XML schema's numbers: a sign, digits, a decimal point, an exponent; INF and NaN
/// (and Infinity, as Java writes it). Nothing for other texts.
std::optional<double> XmlNumber(std::string_view text);

/// `type` is the value's xsi:type with or without its prefix, "" for none: then what looks like a
/// number is one. A text where the type promises a number is an error of the server's.
CellValue ReadCellValue(std::string_view type, std::string_view text);

}  // namespace vok::xmla
