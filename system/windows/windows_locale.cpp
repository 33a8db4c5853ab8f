#include "system/windows/windows_locale.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/failure.h"
#include "system/windows/system_header.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

constexpr std::size_t kLongestCustom = 80;
constexpr int kMonths = 12;

LCID CountryNamed(std::string name) {
  name = name.substr(0, name.find_first_of(".@"));
  std::replace(name.begin(), name.end(), '_', '-');
  const LCID country = ::LocaleNameToLCID(Utf16(name).c_str(), 0);
  if (country != 0) return country;
  throw Failure(failure_number::kInvalidCall,
                "Windows knows no customs of \"" + name + "\"; name a language and a country");
}

std::wstring CustomOf(LCID country, LCTYPE type) {
  std::array<wchar_t, kLongestCustom> text{};
  ::GetLocaleInfoW(country, type, text.data(), static_cast<int>(text.size()));
  return text.data();
}

/// Full, short, and as a date has them, where the language makes a difference. A form that the
/// system does not know is empty.
void AddMonths(LCID country, uint32_t flags, MonthNames& months) {
  for (int month = 1; month <= kMonths; ++month) {
    const LCTYPE full = LOCALE_SMONTHNAME1 + static_cast<LCTYPE>(month - 1);
    const LCTYPE cut = LOCALE_SABBREVMONTHNAME1 + static_cast<LCTYPE>(month - 1);
    for (const LCTYPE type : {full, cut, full | LOCALE_RETURN_GENITIVE_NAMES}) {
      const std::string name = FoldedCase(Utf8(CustomOf(country, type | flags)));
      if (!name.empty()) months.Add(name, month);
    }
  }
}

MonthNames MonthsOf(LCID country, uint32_t flags) {
  MonthNames months;
  AddMonths(country, flags, months);
  AddMonths(LOCALE_INVARIANT, 0, months);  // English
  return months;
}

/// 30 December 1899, which automation leaves out: a date of day zero is a time alone there.
std::wstring ZeroDay(LCID country, uint32_t flags) {
  SYSTEMTIME day{};
  day.wYear = 1899;
  day.wMonth = 12;
  day.wDay = 30;
  std::array<wchar_t, kLongestCustom> text{};
  ::GetDateFormatW(country, flags | DATE_SHORTDATE, &day, nullptr, text.data(),
                   static_cast<int>(text.size()));
  return text.data();
}

/// As the system takes it: digits and a point, no sign before what rounds to zero.
std::wstring PlainNumber(double number, int decimals) {
  std::array<char, 400> text{};
  const auto written = std::to_chars(text.data(), text.data() + text.size(), number,
                                     std::chars_format::fixed, decimals);
  std::string_view plain(text.data(), written.ptr);
  if (plain.find_first_not_of("-0.") == plain.npos && number < 0) plain.remove_prefix(1);
  return Utf16(plain);
}

/// "3;2;0" of the control panel, where the last size goes on, is 32.
UINT GroupSizes(const std::wstring& groups) {
  UINT sizes = 0;
  for (const wchar_t c : groups) {
    if (c >= L'1' && c <= L'9') sizes = 10 * sizes + static_cast<UINT>(c - L'0');
  }
  return groups.ends_with(L"0") ? sizes : 10 * sizes;
}

}  // namespace

WindowsLocale::WindowsLocale()
    : country_(LOCALE_USER_DEFAULT), flags_(0), months_(MonthsOf(country_, flags_)) {}

WindowsLocale::WindowsLocale(const std::string& name)
    : country_(CountryNamed(name)),
      flags_(LOCALE_NOUSEROVERRIDE),
      months_(MonthsOf(country_, flags_)) {}

std::string WindowsLocale::FoldCase(std::string_view text) const { return FoldedCase(text); }

std::optional<std::string> WindowsLocale::FromCodePage(std::string_view bytes,
                                                       int code_page) const {
  const UINT number = code_page == 0 ? CP_ACP : static_cast<UINT>(code_page);
  const int size = static_cast<int>(bytes.size());
  std::wstring text(bytes.size(), L'\0');  // never more letters than bytes
  const int length =
      ::MultiByteToWideChar(number, MB_ERR_INVALID_CHARS, bytes.data(), size, text.data(), size);
  if (length == 0 && size > 0) return std::nullopt;
  return Utf8(text.substr(0, static_cast<std::size_t>(length)));
}

std::optional<Date> WindowsLocale::ParseDate(std::string_view text) const {
  std::wstring wide = Utf16(text);
  DATE serial = 0;
  if (FAILED(::VarDateFromStr(wide.data(), country_, flags_, &serial))) return std::nullopt;
  return Date{serial};
}

std::optional<int> WindowsLocale::MonthNamed(std::string_view text) const {
  return months_.NamedOrCutShort(FoldedCase(text));
}

std::string WindowsLocale::Text(Date date, uint32_t flags) const {
  BSTR text = nullptr;
  if (FAILED(::VarBstrFromDate(date.serial, country_, flags_ | flags, &text))) {
    throw Failure(failure_number::kOverflow,
                  "Overflow: day " + std::to_string(date.serial) +
                      " is outside the years 100 to 9999, which Windows can write");
  }
  const std::string utf8 = Utf8({text, ::SysStringLen(text)});
  ::SysFreeString(text);
  return utf8;
}

std::string WindowsLocale::ShortDate(Date date) const {
  const Date day = date.DayOnly();
  return day.IsZero() ? Utf8(ZeroDay(country_, flags_)) : Text(day, VAR_DATEVALUEONLY);
}

std::string WindowsLocale::DateText(Date date) const { return Text(date, 0); }

std::wstring WindowsLocale::Custom(uint32_t type) const {
  return CustomOf(country_, type | flags_);
}

unsigned WindowsLocale::CustomNumber(uint32_t type) const {
  DWORD number = 0;
  ::GetLocaleInfoW(country_, type | flags_ | LOCALE_RETURN_NUMBER,
                   reinterpret_cast<wchar_t*>(&number), sizeof(number) / sizeof(wchar_t));
  return number;
}

std::string WindowsLocale::NumberText(double number, int decimals) const {
  const std::wstring plain = PlainNumber(number, decimals);
  std::wstring point = Custom(LOCALE_SDECIMAL);
  std::wstring separator = Custom(LOCALE_STHOUSAND);
  const NUMBERFMTW form{static_cast<UINT>(decimals),
                        CustomNumber(LOCALE_ILZERO),
                        GroupSizes(Custom(LOCALE_SGROUPING)),
                        point.data(),
                        separator.data(),
                        CustomNumber(LOCALE_INEGNUMBER)};
  std::wstring text(4 * plain.size() + kLongestCustom, L'\0');  // room for separators
  const int length = ::GetNumberFormatW(country_, 0, plain.c_str(), &form, text.data(),
                                        static_cast<int>(text.size()));
  return length == 0 ? Utf8(plain) : Utf8(text.substr(0, static_cast<std::size_t>(length) - 1));
}

bool WindowsLocale::UsesLetterPaper() const { return Custom(LOCALE_IPAPERSIZE) == L"1"; }

}  // namespace vok::windows
