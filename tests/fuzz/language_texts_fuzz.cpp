// Any bytes as a translator's CSV file: refused, or the same after a way through CSV and through
// the rows of a language table.
#include "cli/language_texts.h"
#include "tests/fuzz/fuzz.h"

void FuzzOne(std::string_view bytes) {
  using namespace vok::cli;  // NOLINT: a program of one file
  LanguageTexts texts;
  if (Refuses([&] { texts = ParseLanguageTexts(bytes, "input.csv"); })) return;
  LanguageNotes(texts);
  if (ParseLanguageTexts(PrintLanguageTexts(texts), "again.csv") != texts) std::abort();
  std::size_t filled = 0;
  for (const auto& line : texts) {
    for (const auto& text : line.texts) filled += text.empty() ? 0 : 1;
  }
  const auto table = ToLanguageTable(texts);
  if (table.rows.size() != filled) std::abort();
  if (ToLanguageTable(FromLanguageTable(table, "Lang.rs")).rows.size() != filled) std::abort();
}
