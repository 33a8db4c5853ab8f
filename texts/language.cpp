#include "texts/language.h"

#include <optional>

#include "platform/failure.h"
#include "texts/string_table.h"
#include "texts/text_numbers.h"

namespace vok {
namespace {

constexpr int32_t kTextField = 2;

/// Nothing where the row, its text or a field of the table is missing.
std::optional<std::string> FindText(Recordset& table, int number) try {
  if (table.Count() == 0) return std::nullopt;
  table.MoveFirst();
  table.Find("sId=" + std::to_string(number));
  if (table.AtEnd()) return std::nullopt;
  return table.Field(kTextField).ToText();
} catch (const Failure&) {
  return std::nullopt;
}

/// Hebrew, Arabic and their neighbours, U+0590 to U+08FF, by the first two bytes of a character.
bool IsFromRight(unsigned char first, unsigned char second) {
  constexpr unsigned char kStart = 0xD6, kFirstThere = 0x90, kEnd = 0xDF;
  constexpr unsigned char kMore = 0xE0, kLastOfMore = 0xA3;
  if (first == kMore) return second <= kLastOfMore;
  return first > kStart ? first <= kEnd : first == kStart && second >= kFirstThere;
}

}  // namespace

std::string LanguageTableFile(const ComponentInfo& component) {
  return component.folder + "\\Lang.rs";
}

int16_t GetUILanguage(const Host& host, Environment& environment) {
  const std::string text = ReadIniValue(host, environment, "Qel", "QelUILanguage");
  if (text == "1") return 1;
  return text == "2" ? int16_t{2} : int16_t{0};
}

void InitLanguage(const Host& host, Environment& environment, Language& language) {
  language.UILanguage = GetUILanguage(host, environment);
  language.LanguageMissing = !host.files.Exists(LanguageTableFile(host.component));
  if (!language.LanguageMissing) OpenLanguageTable(host, language);
}

bool OpenLanguageTable(const Host& host, Language& language) {
  language.LanguageTable.reset();
  try {
    language.LanguageTable = host.database.OpenRecordset(LanguageTableFile(host.component));
    language.LanguageTable->MoveFirst();
    language.LanguageTable->SetFilter("lId = " + std::to_string(language.UILanguage + 1));
  } catch (const Failure&) {
    // A window without its translation is of more use than no window.
  }
  return true;
}

std::string GetLangString(Language& language, int number) {
  const std::string own = StringTableText(number);
  if (!language.LanguageTable || language.LanguageMissing) return own;
  if (auto text = FindText(*language.LanguageTable, number)) return *std::move(text);
  return own.empty() ? std::to_string(number) : own;
}

bool IsReadFromRight(Language& language) {
  const std::string text = GetLangString(language, text_number::kDataSource);
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (IsFromRight(static_cast<unsigned char>(text[at - 1]),
                    static_cast<unsigned char>(text[at]))) {
      return true;
    }
  }
  return false;
}

}  // namespace vok
