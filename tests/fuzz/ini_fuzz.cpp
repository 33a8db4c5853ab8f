#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "providers/posix/icu_locale.h"
#include "providers/posix/ini_text.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const vok::IcuLocale locale("en_GB");
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto value = vok::IniValue(locale, bytes, "Qel", "QelUILanguage");
  if (vok::BytePrefix(value, 254).size() > 254) std::abort();
  return 0;
}
