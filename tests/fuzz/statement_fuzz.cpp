#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/failure.h"
#include "providers/posix/icu_locale.h"
#include "providers/sqlite/connection_text.h"
#include "providers/sqlite/like_pattern.h"
#include "providers/sqlite/statement.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const vok::IcuLocale locale("en_GB");
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    const auto statement = vok::ParseStatement(text);
    if (statement.filter) vok::LikePattern(locale, statement.filter->pattern).Matches(text);
  } catch (const vok::Failure&) {
  }
  try {
    vok::ParseConnectionText(std::string(text));
  } catch (const vok::Failure&) {
  }
  return 0;
}
