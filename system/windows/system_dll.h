// Functions of the system's DLLs that Windows would look for beside a program first: taken from the
// system's folder alone.
#pragma once

namespace vok::windows {

/// The function's address; nullptr where the system lacks it. The DLL stays loaded.
void* SystemAddress(const wchar_t* dll, const char* name);
/// As above; throws the `Failure` of the system's error where the system lacks it.
void* RequiredSystemAddress(const wchar_t* dll, const char* name);

/// `Function` is the type of a pointer to it.
template <typename Function>
Function SystemFunction(const wchar_t* dll, const char* name) {
  return reinterpret_cast<Function>(SystemAddress(dll, name));
}
template <typename Function>
Function RequiredSystemFunction(const wchar_t* dll, const char* name) {
  return reinterpret_cast<Function>(RequiredSystemAddress(dll, name));
}

}  // namespace vok::windows
