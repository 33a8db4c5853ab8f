// The language of the windows: which one, and its texts.
//
// A text is looked up by its number in the table of the file "Lang.rs" beside the component, or
// where that is installed; where the file, row or text is missing, the component's own English text
// serves. The table is a record set of rows (sId: number of the text, lId: number of the language,
// third field: the text).
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "env/environment.h"
#include "platform/database.h"
#include "platform/host.h"

namespace vok {

/// Process-wide, one per process, handed around by reference. The table stays open once opened; a
/// later opening replaces it. It is the host's and must not outlive it.
struct Language {
  int16_t UILanguage = 0;                    ///< 0, 1 or 2: rows with an lId one higher are shown
  std::unique_ptr<Recordset> LanguageTable;  ///< filtered to the language
  bool LanguageMissing = false;              ///< no file at the last initialisation
  /// 1 lays the windows out from right to left. Nothing here sets it; hosts do.
  int RightToLeftMarker = 0;

  bool IsRightToLeft() const { return RightToLeftMarker == 1; }
};

/// Path of the language table.
std::string LanguageTableFile(const ComponentInfo& component);

/// The ini file's value "QelUILanguage" of section "Qel": 0, 1 or 2; 0 for any other text.
int16_t GetUILanguage(const Host& host, Environment& environment);

/// Chooses the language, opens the table where there is one.
void InitLanguage(const Host& host, Environment& environment, Language& language);

/// Opens the table and filters it to the language. Always true: a table that cannot be read leaves
/// the component's own texts.
bool OpenLanguageTable(const Host& host, Language& language);

/// The text of that number in the table; without such a row, or where its text is NULL or cannot be
/// read, the component's own; without one of these the number itself. Without a table the
/// component's own, "" where it has none. Never fails.
std::string GetLangString(Language& language, int number);

/// Whether the language is read from right to left, as the letters of its texts say.
bool IsReadFromRight(Language& language);

}  // namespace vok
