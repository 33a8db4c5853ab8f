#include "texts/language.h"

#include <optional>

#include "platform/failure.h"
#include "platform/utf8.h"
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

/// Hebrew, Arabic and their neighbours.
bool IsFromRight(char32_t code) { return code >= 0x0590 && code <= 0x08FF; }

}  // namespace

std::string LanguageTableFile(const ComponentInfo& component) {
  return component.language_table.empty() ? component.folder + "\\Lang.rs"
                                          : component.language_table;
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
  std::string own = StringTableText(number);
  if (!language.LanguageTable || language.LanguageMissing) return own;
  if (auto text = FindText(*language.LanguageTable, number)) return *std::move(text);
  return own.empty() ? std::to_string(number) : own;
}

bool IsReadFromRight(Language& language) {
  const std::string name = GetLangString(language, text_number::kDataSource);
  for (std::string_view text = name; !text.empty();) {
    if (IsFromRight(TakeLetter(text).code)) return true;
  }
  return false;
}

}  // namespace vok
