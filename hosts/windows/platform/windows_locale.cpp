#include "hosts/windows/platform/windows_locale.h"

#include <algorithm>

#include "hosts/windows/platform/fold_case.h"
#include "hosts/windows/platform/system_header.h"
#include "hosts/windows/platform/utf16.h"
#include "platform/failure.h"

namespace vok::windows {
namespace {

LCID CountryNamed(std::string name) {
  name = name.substr(0, name.find_first_of(".@"));
  std::replace(name.begin(), name.end(), '_', '-');
  const LCID country = ::LocaleNameToLCID(Utf16(name).c_str(), 0);
  if (country != 0) return country;
  throw Failure(failure_number::kInvalidCall,
                "Windows knows no customs of \"" + name + "\"; name a language and a country");
}

}  // namespace

WindowsLocale::WindowsLocale() : country_(LOCALE_USER_DEFAULT), flags_(0) {}

WindowsLocale::WindowsLocale(const std::string& name)
    : country_(CountryNamed(name)), flags_(LOCALE_NOUSEROVERRIDE) {}

std::string WindowsLocale::FoldCase(std::string_view text) const { return FoldedCase(text); }

std::optional<Date> WindowsLocale::ParseDate(std::string_view text) const {
  std::wstring wide = Utf16(text);
  DATE serial = 0;
  if (FAILED(::VarDateFromStr(wide.data(), country_, flags_, &serial))) return std::nullopt;
  return Date{serial};
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
  return Text(date.DayOnly(), VAR_DATEVALUEONLY);
}

std::string WindowsLocale::DateText(Date date) const { return Text(date, 0); }

}  // namespace vok::windows
