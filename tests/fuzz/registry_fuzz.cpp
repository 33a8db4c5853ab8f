#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/failure.h"
#include "providers/posix/icu_locale.h"
#include "providers/posix/registry_text.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const vok::IcuLocale locale("en_GB");
  try {
    vok::ReadRegistryText(locale, {reinterpret_cast<const char*>(data), size}, "fuzz");
  } catch (const vok::Failure&) {
  }
  return 0;
}
