// What the platform calls in the component's file.
#include <string_view>

#include "hosts/com/class_factory.h"
#include "hosts/com/edge.h"
#include "hosts/com/interface.h"
#include "hosts/com/module.h"
#include "hosts/com/registration.h"
#include "system/automation/ole.h"

#ifdef __GLIBCXX__
namespace __gnu_cxx {
void __freeres();  // the run-time library's own, declared in none of its headers
}
#endif

using namespace vok::windows;

namespace {

HRESULT ChangeRegistration(bool add, Audience audience) {
  LSTATUS status = ERROR_SUCCESS;
  const HRESULT done = AtEdge([&] { status = add ? Register(audience) : Unregister(audience); });
  if (FAILED(done)) return done;
  return HRESULT_FROM_WIN32(status);
}

/// The run-time library keeps a reserve of memory for exceptions. Each loaded copy of this file has
/// its own reserve and must free it.
void FreeRunTime() {
#ifdef __GLIBCXX__
  __gnu_cxx::__freeres();
#endif
}

}  // namespace

extern "C" {

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* process_ends) {
  if (reason == DLL_PROCESS_ATTACH) SetModule(module);
  if (reason == DLL_PROCESS_DETACH && process_ends == nullptr) FreeRunTime();
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID class_id, REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (class_id != kClassId) return CLASS_E_CLASSNOTAVAILABLE;
  HRESULT code = S_OK;
  const HRESULT made = AtEdge([&] {
    auto* factory = new ClassFactory;
    code = factory->QueryInterface(id, object);
    factory->Release();
  });
  return FAILED(made) ? made : code;
}

STDAPI DllCanUnloadNow() { return IsModuleFree() ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return ChangeRegistration(true, Audience::kMachine); }

STDAPI DllUnregisterServer() { return ChangeRegistration(false, Audience::kMachine); }

/// `regsvr32 /n /i:user`: for the current user alone; without "user" for the machine.
STDAPI DllInstall(BOOL install, LPCWSTR command_line) {
  const bool user = command_line != nullptr && _wcsicmp(command_line, L"user") == 0;
  return ChangeRegistration(install != FALSE, user ? Audience::kUser : Audience::kMachine);
}
}
