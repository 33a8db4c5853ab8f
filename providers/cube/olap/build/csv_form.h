// How a CSV file is written where it is not written as RFC 4180 has it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vok::olap {

struct CsvForm {
  char separator = ',';
  char decimal = '.';  ///< or ','; then "." and blanks part groups of three digits
  std::string dates;   ///< such as "dd.mm.yyyy", "m/d/yy"; "" when dates are read as they stand
};

/// As options and schemas give them; an empty text leaves what is there. `separator` is one letter,
/// "tab" or "\t"; `decimal` is "." or ",". Failure 5 for any other text, and for a comma that is
/// both.
void SetForm(CsvForm& form, const std::string& separator, const std::string& decimal,
             const std::string& dates);

/// A date that is written so in that form, as "2024-01-31"; nothing for any other text. In the form
/// "dd" and "mm" are two digits, "d" and "m" one or two, "yyyy" four, "yy" two (30 to 99 are 19xx).
std::optional<std::string> IsoDateIn(std::string_view form, std::string_view text);

/// A number with a decimal comma, with a point instead and without groups; "" for a text that is
/// not one.
std::string WithPoint(std::string_view text);

}  // namespace vok::olap
