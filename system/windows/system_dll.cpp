#include "system/windows/system_dll.h"

#include "system/windows/system_error.h"
#include "system/windows/utf16.h"

namespace vok::windows {

void* SystemAddress(const wchar_t* dll, const char* name) {
  const HMODULE module = ::LoadLibraryExW(dll, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  return module == nullptr ? nullptr : reinterpret_cast<void*>(::GetProcAddress(module, name));
}

void* RequiredSystemAddress(const wchar_t* dll, const char* name) {
  if (void* const address = SystemAddress(dll, name)) return address;
  ThrowSystemFailure(::GetLastError(), "use " + std::string(name) + " of", Utf8(dll));
}

}  // namespace vok::windows
