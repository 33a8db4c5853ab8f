#include "cli/language_texts.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <set>

#include "cli/print.h"
#include "platform/failure.h"
#include "platform/text.h"
#include "providers/cube/olap/build/csv_scanner.h"
#include "texts/string_table.h"

namespace vok::cli {
namespace {

using olap::CsvScanner;
using olap::Field;

std::optional<int> WholeNumber(std::string_view text) {
  text = TrimBlanks(text);
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < 1) return std::nullopt;
  return number;
}

/// Which language each column after the first holds, from 0.
std::vector<std::size_t> LanguagesOf(const CsvScanner& scanner, const std::vector<Field>& header) {
  if (header[0].text != "number") {
    throw scanner.Bad("the first column must be headed number, and commas must part the columns; " +
                      Quoted(header[0].text) + " is there");
  }
  std::vector<std::size_t> languages;
  for (std::size_t column = 1; column < header.size(); ++column) {
    const auto name = TrimBlanks(header[column].text);
    const auto digits = name.substr(0, name.find(' '));
    const auto language = WholeNumber(digits);
    if (!language || *language > static_cast<int>(kLanguageCount)) {
      throw scanner.Bad("column " + Quoted(name) +
                        " does not begin with the number of a language, 1, 2 or 3");
    }
    const auto place = static_cast<std::size_t>(*language - 1);
    if (std::find(languages.begin(), languages.end(), place) != languages.end()) {
      throw scanner.Bad("language " + std::to_string(*language) +
                        " has two columns; leave out one");
    }
    languages.push_back(place);
  }
  if (languages.empty())
    throw scanner.Bad("no column of a language follows the number; add one, headed 1, 2 or 3");
  return languages;
}

void CheckText(const CsvScanner& scanner, std::string_view text) {
  if (Utf16Length(text) > kLongestText) {
    throw scanner.Bad("a text is longer than " + std::to_string(kLongestText) +
                      " characters; shorten it");
  }
  const bool has_control = std::any_of(text.begin(), text.end(), [](unsigned char c) {
    return c < 0x20 && c != '\t' && c != '\r' && c != '\n';
  });
  if (has_control) throw scanner.Bad("a text has a control character; delete it");
}

LanguageText ReadLine(const CsvScanner& scanner, const std::vector<Field>& fields,
                      const std::vector<std::size_t>& languages) {
  if (fields.size() != languages.size() + 1) {
    throw scanner.Bad("has " + std::to_string(fields.size()) + " fields, the header has " +
                      std::to_string(languages.size() + 1));
  }
  const auto number = WholeNumber(fields[0].text);
  if (!number)
    throw scanner.Bad(Quoted(fields[0].text) + " is not the number of a text, a whole one above 0");
  LanguageText line{*number};
  for (std::size_t column = 0; column < languages.size(); ++column) {
    CheckText(scanner, fields[column + 1].text);
    line.texts[languages[column]] = fields[column + 1].text;
  }
  return line;
}

/// "1000, 1001, …": all of a few, the first of many.
std::string Listed(const std::vector<int>& numbers) {
  constexpr std::size_t kShown = 10;
  std::string list;
  for (std::size_t index = 0; index < std::min(numbers.size(), kShown); ++index) {
    list += (index > 0 ? ", " : "") + std::to_string(numbers[index]);
  }
  if (numbers.size() > kShown) {
    list += " and " + std::to_string(numbers.size() - kShown) + " more";
  }
  return list;
}

bool SameEnds(const std::string& a, const std::string& b) {
  return (a.front() == ' ') == (b.front() == ' ') && (a.back() == ' ') == (b.back() == ' ');
}

void NoteLanguage(const LanguageTexts& texts, std::size_t language,
                  std::vector<std::string>& notes) {
  std::map<int, const std::string*> translated;
  for (const auto& line : texts) {
    if (!line.texts[language].empty()) translated[line.number] = &line.texts[language];
  }
  if (translated.empty()) return;
  const std::string name = "Language " + std::to_string(language + 1);
  std::vector<int> missing;
  std::vector<int> other_ends;
  for (const int number : StringTableNumbers()) {
    const auto found = translated.find(number);
    if (found == translated.end()) {
      missing.push_back(number);
    } else if (!SameEnds(*found->second, StringTableText(number))) {
      other_ends.push_back(number);
    }
  }
  if (!missing.empty()) notes.push_back(name + " lacks " + Listed(missing));
  if (!other_ends.empty()) {
    notes.push_back(name +
                    " begins or ends with a blank where the English text does not, or "
                    "lacks one that it has: " +
                    Listed(other_ends));
  }
}

std::size_t PlaceOf(const recordset::Rowset& table, const std::string& name,
                    const std::string& origin) {
  for (std::size_t place = 0; place < table.columns.size(); ++place) {
    if (EqualNoCaseAscii(table.columns[place].name, name)) return place;
  }
  recordset::ThrowUnreadable(origin, "it is not a language table, it has no field " + name);
}

constexpr std::size_t kTextPlace = 2;

void CheckIsText(const recordset::Rowset& table, const std::string& origin) {
  if (table.columns.size() <= kTextPlace) {
    recordset::ThrowUnreadable(origin, "it is not a language table, it has no third field");
  }
  if (table.columns[kTextPlace].type == recordset::FieldType::kText) return;
  recordset::ThrowUnreadable(origin, "it is not a language table: its third field \"" +
                                         table.columns[kTextPlace].name +
                                         "\" is not a text, as the text of a number has to be");
}

/// Nothing for NULL: a row that no look-up finds.
std::optional<int> NumberAt(const recordset::Rowset& table, std::size_t row, std::size_t place,
                            const std::string& origin) {
  const Value& value = table.rows[row][place];
  if (value.IsNull()) return std::nullopt;
  try {
    return value.ToInt32();
  } catch (const Failure&) {
    recordset::ThrowUnreadable(origin, "it is not a language table: the field " +
                                           table.columns[place].name + " of its row " +
                                           std::to_string(row + 1) + " is not a whole number");
  }
}

std::string TextAt(const recordset::Rowset& table, std::size_t row, const std::string& origin) {
  const Value& value = table.rows[row][kTextPlace];
  if (const auto* unshown = value.As<CellError>()) {
    recordset::ThrowUnreadable(origin, "the text of its row " + std::to_string(row + 1) +
                                           " cannot be shown, " + unshown->description +
                                           ". Name it with --code-page");
  }
  return value.IsNull() ? std::string() : value.ToText();
}

}  // namespace

LanguageTexts OwnTexts() {
  LanguageTexts texts;
  for (const int number : StringTableNumbers()) {
    texts.push_back({number, {StringTableText(number)}});
  }
  return texts;
}

LanguageTexts ParseLanguageTexts(std::string_view csv, const std::string& origin) {
  CsvScanner scanner(csv, origin);
  std::vector<Field> fields;
  if (!scanner.NextRow(fields)) throw scanner.Bad("is empty; a header line is expected");
  const auto languages = LanguagesOf(scanner, fields);
  LanguageTexts texts;
  std::map<int, uint64_t> lines;
  while (scanner.NextRow(fields)) {
    texts.push_back(ReadLine(scanner, fields, languages));
    const auto [earlier, is_new] = lines.emplace(texts.back().number, scanner.line());
    if (!is_new) {
      throw scanner.Bad("number " + std::to_string(earlier->first) + " stands in line " +
                        std::to_string(earlier->second) + " already");
    }
  }
  return texts;
}

std::string PrintLanguageTexts(const LanguageTexts& texts) {
  std::string csv = "number,1,2,3\r\n";
  for (const auto& line : texts) {
    csv += std::to_string(line.number);
    for (const auto& text : line.texts) csv += "," + CsvField(text);
    csv += "\r\n";
  }
  return csv;
}

recordset::Rowset ToLanguageTable(const LanguageTexts& texts) {
  using recordset::FieldType;
  recordset::Rowset table{
      {{"sId", FieldType::kInteger}, {"lId", FieldType::kInteger}, {"Text", FieldType::kText}}, {}};
  for (const auto& line : texts) {
    for (std::size_t language = 0; language < kLanguageCount; ++language) {
      if (line.texts[language].empty()) continue;
      table.rows.push_back({line.number, static_cast<int32_t>(language + 1), line.texts[language]});
    }
  }
  return table;
}

LanguageTexts FromLanguageTable(const recordset::Rowset& table, const std::string& origin) {
  const std::size_t number_place = PlaceOf(table, "sId", origin);
  const std::size_t language_place = PlaceOf(table, "lId", origin);
  CheckIsText(table, origin);
  std::map<int, LanguageText> lines;
  std::set<std::pair<int, int>> seen;
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    const auto number = NumberAt(table, row, number_place, origin);
    const auto language = NumberAt(table, row, language_place, origin);
    if (!number || !language) continue;
    if (*language < 1 || *language > static_cast<int>(kLanguageCount)) {
      recordset::ThrowUnreadable(origin, "its row " + std::to_string(row + 1) + " is of language " +
                                             std::to_string(*language) +
                                             ", which is not 1, 2 or 3");
    }
    if (!seen.emplace(*number, *language).second) continue;
    LanguageText& line = lines[*number];
    line.number = *number;
    line.texts[static_cast<std::size_t>(*language - 1)] = TextAt(table, row, origin);
  }
  LanguageTexts texts;
  for (auto& [number, line] : lines) texts.push_back(std::move(line));
  return texts;
}

std::vector<std::string> LanguageNotes(const LanguageTexts& texts) {
  std::vector<std::string> notes;
  for (std::size_t language = 0; language < kLanguageCount; ++language) {
    NoteLanguage(texts, language, notes);
  }
  const auto known = StringTableNumbers();
  std::vector<int> unknown;
  for (const auto& line : texts) {
    if (!std::binary_search(known.begin(), known.end(), line.number)) {
      unknown.push_back(line.number);
    }
  }
  if (!unknown.empty()) notes.push_back("No window has a text of the number " + Listed(unknown));
  return notes;
}

}  // namespace vok::cli
