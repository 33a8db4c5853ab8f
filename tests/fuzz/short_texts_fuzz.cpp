// Any bytes as a registry file, an ini file, a statement with its pattern, a connection text.
#include "platform/connection_text.h"
#include "platform/text.h"
#include "providers/database/sqlite/like_pattern.h"
#include "providers/database/sqlite/statement.h"
#include "system/posix/file_registry.h"
#include "system/posix/icu_locale.h"
#include "system/posix/registry_text.h"
#include "tests/fuzz/fuzz.h"

void FuzzOne(std::string_view bytes) {
  static const vok::IcuLocale locale("en_GB");
  Refuses([&] { vok::ReadRegistryText(locale, bytes, "fuzz"); });
  vok::IniValue(locale, bytes, "Qel", "QelUILanguage");
  Refuses([&] {
    const auto statement = vok::ParseStatement(bytes);
    if (statement.filter) vok::LikePattern(locale, statement.filter->text).Matches(bytes);
  });
  Refuses([&] { vok::cube_text::ParseConnectionText(bytes); });
}
