// The doubles as a component: registers the classes that a test wants to be there, and makes them.
//
//   regsvr32 /s /n /i:"Excel.Application ADODB.Connection" com_recorder.dll
#include <algorithm>
#include <iterator>
#include <sstream>
#include <string>

#include "system/automation/ole.h"
#include "system/windows/utf16.h"
#include "tests/hosts/com/com_recorder/recorder.h"
#include "tests/hosts/com/com_recorder/script.h"

namespace {

using vok::com_recorder::Recorder;

constexpr const char* kClasses[] = {"Excel.Application",
                                    "ADODB.Connection",
                                    "ADODB.Recordset",
                                    "ADODB.Command",
                                    "ADOX.Catalog",
                                    "ADOX.Table",
                                    "ADOX.Index",
                                    "ADOMD.Catalog",
                                    "ADOMD.Cellset",
                                    "Microsoft.Jet.OLEDB.4.0",
                                    "Microsoft.ACE.OLEDB.16.0",
                                    "Microsoft.ACE.OLEDB.15.0",
                                    "Microsoft.ACE.OLEDB.12.0",
                                    "MSOLAP"};

HMODULE module;

/// The first part tells which class it is.
GUID ClassId(std::size_t index) {
  return {
      static_cast<ULONG>(index), 0x5B6C, 0x4D1E, {0x9A, 0x57, 0x3E, 0x10, 0x7C, 0x2B, 0x64, 0x01}};
}

class Factory final : public IClassFactory {
 public:
  explicit Factory(std::string name) : name_(std::move(name)) {}
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_IClassFactory) return E_NOINTERFACE;
    *object = this;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
    auto* recorder = new Recorder(name_, true);
    const HRESULT code = recorder->QueryInterface(id, object);
    recorder->Release();
    return code;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  ~Factory() = default;
  std::string name_;
  ULONG references_ = 1;
};

LSTATUS Set(const std::wstring& key, const std::wstring& text) {
  return RegSetValueW(HKEY_CLASSES_ROOT, key.c_str(), REG_SZ, text.c_str(), 0);
}

HRESULT Register(std::size_t index) {
  wchar_t id[39], file[MAX_PATH];
  StringFromGUID2(ClassId(index), id, 39);
  GetModuleFileNameW(module, file, MAX_PATH);
  const std::wstring name = vok::windows::Utf16(kClasses[index]);
  const bool done = Set(name + L"\\CLSID", id) == ERROR_SUCCESS &&
                    Set(std::wstring(L"CLSID\\") + id + L"\\InprocServer32", file) == ERROR_SUCCESS;
  return done ? S_OK : E_FAIL;
}

}  // namespace

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) module = instance;
  if (reason == DLL_PROCESS_DETACH && Recorder::Count() > 0) {
    vok::com_recorder::WriteDown(std::to_string(Recorder::Count()) + " objects were left");
  }
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID class_id, REFIID, void** object) {
  *object = nullptr;
  if (class_id.Data1 >= std::size(kClasses) || class_id != ClassId(class_id.Data1)) {
    return CLASS_E_CLASSNOTAVAILABLE;
  }
  *object = static_cast<IClassFactory*>(new Factory(kClasses[class_id.Data1]));
  return S_OK;
}

STDAPI DllCanUnloadNow() { return S_FALSE; }

STDAPI DllInstall(BOOL, LPCWSTR classes) {
  std::istringstream names(vok::windows::Utf8(classes));
  for (std::string name; names >> name;) {
    const auto* found = std::find(std::begin(kClasses), std::end(kClasses), name);
    if (found == std::end(kClasses)) return E_INVALIDARG;
    const HRESULT code = Register(static_cast<std::size_t>(found - std::begin(kClasses)));
    if (FAILED(code)) return code;
  }
  return S_OK;
}
}
