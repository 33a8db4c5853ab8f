#include "system/windows/utf16.h"

#include "system/windows/system_header.h"

namespace vok::windows {
namespace {

std::wstring Widened(UINT code_page, std::string_view text) {
  const auto size = static_cast<int>(text.size());
  const int units = ::MultiByteToWideChar(code_page, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(units), L'\0');
  ::MultiByteToWideChar(code_page, 0, text.data(), size, wide.data(), units);
  return wide;
}

std::string Narrowed(UINT code_page, std::wstring_view text) {
  const auto size = static_cast<int>(text.size());
  const int bytes =
      ::WideCharToMultiByte(code_page, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(bytes), '\0');
  ::WideCharToMultiByte(code_page, 0, text.data(), size, narrow.data(), bytes, nullptr, nullptr);
  return narrow;
}

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

std::wstring Utf16(std::string_view utf8) { return Widened(CP_UTF8, utf8); }
std::string Utf8(std::wstring_view utf16) { return Narrowed(CP_UTF8, utf16); }
std::string AnsiText(std::string_view utf8) { return Narrowed(CP_ACP, Utf16(utf8)); }
bool HasAnsiForm(std::string_view utf8) { return Utf8OfAnsi(AnsiText(utf8)) == utf8; }
std::string Utf8OfAnsi(std::string_view ansi) { return Utf8(Widened(CP_ACP, ansi)); }

std::string FoldedCase(std::string_view text) {
  std::wstring wide = Utf16(text);
  if (wide.empty()) return {};
  ReplaceAll(wide, L'\u00DF', L"ss");
  ReplaceAll(wide, L'\u1E9E', L"ss");
  // By way of the capitals, for small letters that share one, such as the two small sigmas.
  return Utf8(Mapped(LCMAP_LOWERCASE, Mapped(LCMAP_UPPERCASE, std::move(wide))));
}

}  // namespace vok::windows
