// The texts of the windows as translators work on them: a CSV file with a line per number and a
// column per language, and the same as rows of a language table.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "providers/recordset/rowset.h"

namespace vok::cli {

inline constexpr std::size_t kLanguageCount = 3;
inline constexpr std::size_t kLongestText = 1000;  // UTF-16 units

/// A number and its text in each language; "" where there is none.
struct LanguageText {
  int number = 0;
  std::array<std::string, kLanguageCount> texts = {};
  friend bool operator==(const LanguageText&, const LanguageText&) = default;
};
using LanguageTexts = std::vector<LanguageText>;

/// The component's own texts, as the first language.
LanguageTexts OwnTexts();

/// Reads a CSV file: a column "number", then columns headed by the number of a language, 1 to 3,
/// which a name may follow ("2 Hebrew"). Fields may be empty. Failure -2147467259 names `origin`,
/// the line and what is wrong: another column, a number that is not one or stands twice, a text
/// that is too long or has control characters. No row is lost silently.
LanguageTexts ParseLanguageTexts(std::string_view csv, const std::string& origin);
std::string PrintLanguageTexts(const LanguageTexts& texts);

/// The rows of a language table, a row per text; and back. Of two rows of one number and language
/// the first counts, as it does when texts are looked up. Failure -2147467259 for a record set that
/// is no language table.
recordset::Rowset ToLanguageTable(const LanguageTexts& texts);
LanguageTexts FromLanguageTable(const recordset::Rowset& table, const std::string& origin);

/// What a translator should look at, a line each: numbers that a language lacks, numbers that no
/// window has, blanks at a text's ends that differ from the component's own text (messages are put
/// together from texts and names). Languages without any text are not looked at.
std::vector<std::string> LanguageNotes(const LanguageTexts& texts);

}  // namespace vok::cli
