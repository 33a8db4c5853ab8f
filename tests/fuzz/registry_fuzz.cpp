#include "system/posix/icu_locale.h"
#include "system/posix/registry_text.h"
#include "tests/fuzz/fuzz.h"

void FuzzOne(std::string_view bytes) {
  static const vok::IcuLocale locale("en_GB");
  Refuses([&] { vok::ReadRegistryText(locale, bytes, "fuzz"); });
}
