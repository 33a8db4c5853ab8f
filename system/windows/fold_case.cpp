#include "system/windows/fold_case.h"

#include "system/windows/system_header.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

std::wstring Mapped(DWORD mapping, std::wstring text) {
  const std::wstring from = text;
  const auto size = static_cast<int>(from.size());
  ::LCMapStringEx(LOCALE_NAME_INVARIANT, mapping | LCMAP_LINGUISTIC_CASING, from.data(), size,
                  text.data(), size, nullptr, nullptr, 0);
  return text;
}

void ReplaceAll(std::wstring& text, wchar_t letter, const std::wstring& by) {
  for (auto at = text.find(letter); at != std::wstring::npos; at = text.find(letter, at)) {
    text.replace(at, 1, by);
  }
}

}  // namespace

std::string FoldedCase(std::string_view text) {
  std::wstring wide = Utf16(text);
  if (wide.empty()) return {};
  ReplaceAll(wide, L'\u00DF', L"ss");
  ReplaceAll(wide, L'\u1E9E', L"ss");
  // By way of the capitals, for small letters that share one, such as the two small sigmas.
  return Utf8(Mapped(LCMAP_LOWERCASE, Mapped(LCMAP_UPPERCASE, std::move(wide))));
}

}  // namespace vok::windows
