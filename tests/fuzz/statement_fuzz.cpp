#include "platform/connection_text.h"
#include "providers/database/sqlite/like_pattern.h"
#include "providers/database/sqlite/statement.h"
#include "system/posix/icu_locale.h"
#include "tests/fuzz/fuzz.h"

void FuzzOne(std::string_view text) {
  static const vok::IcuLocale locale("en_GB");
  Refuses([&] {
    const auto statement = vok::ParseStatement(text);
    if (statement.filter) vok::LikePattern(locale, statement.filter->text).Matches(text);
  });
  Refuses([&] { vok::cube_text::ParseConnectionText(text); });
}
