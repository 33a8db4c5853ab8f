#include "system/automation/bstr.h"

#include <new>

#include "system/windows/utf16.h"

namespace vok::windows {

BSTR NewBstr(std::string_view utf8) {
  const std::wstring wide = Utf16(utf8);
  BSTR text = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (text == nullptr) throw std::bad_alloc();
  return text;
}

std::string FromBstr(BSTR text) {
  return text == nullptr ? std::string() : Utf8({text, SysStringLen(text)});
}

std::string TakeBstr(BSTR text) {
  std::string taken = FromBstr(text);
  SysFreeString(text);
  return taken;
}

}  // namespace vok::windows
