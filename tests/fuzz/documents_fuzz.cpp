// Any bytes as a settings document and as a translator's CSV file: refused, or the same after a way
// through text; and the texts of the second also after a way through the rows of a language table.
#include <algorithm>

#include "cli/language_texts.h"
#include "cli/settings_document.h"
#include "tests/fuzz/fuzz.h"

void FuzzOne(std::string_view bytes) {
  using namespace vok::cli;  // NOLINT: a program of one file
  IsRewrittenTheSame(bytes, [](std::string_view json) {
    return PrintSettingsDocument(ParseSettingsDocument(json, "input.json"));
  });
  LanguageTexts texts;
  if (Refuses([&] { texts = ParseLanguageTexts(bytes, "input.csv"); })) return;
  LanguageNotes(texts);
  if (ParseLanguageTexts(PrintLanguageTexts(texts), "again.csv") != texts) std::abort();
  std::ranges::sort(texts, {}, &LanguageText::number);
  std::erase_if(texts, [](const LanguageText& line) { return line.texts == LanguageText{}.texts; });
  if (FromLanguageTable(ToLanguageTable(texts), "Lang.rs") != texts) std::abort();
}
