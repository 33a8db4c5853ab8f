#include "platform/text.h"
#include "system/posix/file_registry.h"
#include "system/posix/icu_locale.h"
#include "tests/fuzz/fuzz.h"

void FuzzOne(std::string_view bytes) {
  static const vok::IcuLocale locale("en_GB");
  const auto value = vok::IniValue(locale, bytes, "Qel", "QelUILanguage");
  if (vok::Utf16Prefix(value, 254).size() > 3 * 254) std::abort();
}
