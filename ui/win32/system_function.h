// Functions of the system's DLLs that only newer systems have.
#pragma once

#include "system/windows/system_header.h"

namespace vok::windows {

/// The function, of pointer type `Function`; nullptr where the system lacks it. The DLL is one
/// that the component has loaded anyway.
template <typename Function>
Function SystemFunction(const wchar_t* dll, const char* name) {
  const HMODULE module = ::GetModuleHandleW(dll);
  if (module == nullptr) return nullptr;
  return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module, name)));
}

}  // namespace vok::windows
