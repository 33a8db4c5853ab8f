#include "hosts/com/registration.h"

#include <string>
#include <vector>

#include "hosts/com/interface.h"
#include "hosts/com/module.h"
#include "system/automation/bstr.h"
#include "system/automation/com_ptr.h"
#include "system/automation/ole.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

constexpr wchar_t kAutomationProxy[] = L"{00020424-0000-0000-C000-000000000046}";
constexpr const wchar_t* kThisWidth = sizeof(void*) == 8 ? L"win64" : L"win32";
constexpr const wchar_t* kOtherWidth = sizeof(void*) == 8 ? L"win32" : L"win64";

struct Entry {
  std::wstring key;  ///< below the classes
  std::wstring name;
  std::wstring text;
};

std::wstring Text(REFGUID id) {
  wchar_t text[39];
  StringFromGUID2(id, text, 39);
  return text;
}

std::wstring Hexadecimal(WORD number) {
  wchar_t text[9];
  wsprintfW(text, L"%x", number);
  return text;
}

/// What the embedded type library says of itself.
struct Library {
  std::wstring id;
  std::wstring name;
  std::wstring description;
  std::wstring version;      ///< decimal
  std::wstring version_key;  ///< hexadecimal, as the registry has it
};

LSTATUS Read(Library& library) {
  ComPtr<ITypeLib> types;
  TLIBATTR* attributes = nullptr;
  if (FAILED(LoadTypeLibEx(ModuleFile().c_str(), REGKIND_NONE, types.Receive())) ||
      FAILED(types->GetLibAttr(&attributes))) {
    return ERROR_RESOURCE_TYPE_NOT_FOUND;
  }
  const WORD major = attributes->wMajorVerNum, minor = attributes->wMinorVerNum;
  const std::wstring id = Text(attributes->guid);
  types->ReleaseTLibAttr(attributes);
  BSTR name = nullptr, description = nullptr;
  types->GetDocumentation(-1, &name, &description, nullptr, nullptr);
  library = {id, Utf16(TakeBstr(name)), Utf16(TakeBstr(description)),
             std::to_wstring(major) + L"." + std::to_wstring(minor),
             Hexadecimal(major) + L"." + Hexadecimal(minor)};
  return ERROR_SUCCESS;
}

std::wstring ProgId(const Library& library) { return library.name + L".clMe"; }
std::wstring ClassKey() { return L"CLSID\\" + Text(kClassId); }
std::wstring InterfaceKey() { return L"Interface\\" + Text(kInterfaceId); }
std::wstring LibraryKey(const Library& library) { return L"TypeLib\\" + library.id; }
std::wstring LibraryFileKey(const Library& library, const wchar_t* width) {
  return LibraryKey(library) + L"\\" + library.version_key + L"\\0\\" + width;
}

std::vector<Entry> Entries(const Library& library) {
  const std::wstring file = ModuleFile();
  const std::wstring prog_id = ProgId(library), class_key = ClassKey();
  const std::wstring interface_key = InterfaceKey();
  const std::wstring version_key = LibraryKey(library) + L"\\" + library.version_key;
  return {
      {prog_id, L"", prog_id},
      {prog_id + L"\\CLSID", L"", Text(kClassId)},
      {class_key, L"", prog_id},
      {class_key + L"\\InprocServer32", L"", file},
      {class_key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {class_key + L"\\ProgID", L"", prog_id},
      {class_key + L"\\Programmable", L"", L""},
      {class_key + L"\\TypeLib", L"", library.id},
      {class_key + L"\\VERSION", L"", library.version},
      {interface_key, L"", L"_clMe"},
      {interface_key + L"\\ProxyStubClsid32", L"", kAutomationProxy},
      {interface_key + L"\\TypeLib", L"", library.id},
      {interface_key + L"\\TypeLib", L"Version", library.version_key},
      {version_key, L"", library.description},
      {LibraryFileKey(library, kThisWidth), L"", file},
      {version_key + L"\\FLAGS", L"", L"0"},
      {version_key + L"\\HELPDIR", L"", file.substr(0, file.find_last_of(L'\\'))},
  };
}

/// A registry key that is closed again.
class Key {
 public:
  ~Key() {
    if (handle_ != nullptr) RegCloseKey(handle_);
  }
  HKEY* Receive() { return &handle_; }
  HKEY Get() const { return handle_; }

 private:
  HKEY handle_ = nullptr;
};

LSTATUS OpenClasses(Audience audience, Key& classes) {
  const HKEY root = audience == Audience::kUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
  return RegCreateKeyExW(root, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                         classes.Receive(), nullptr);
}

LSTATUS Write(const Key& classes, const Entry& entry) {
  Key key;
  const LSTATUS status = RegCreateKeyExW(classes.Get(), entry.key.c_str(), 0, nullptr, 0,
                                         KEY_SET_VALUE, nullptr, key.Receive(), nullptr);
  if (status != ERROR_SUCCESS) return status;
  return RegSetValueExW(key.Get(), entry.name.c_str(), 0, REG_SZ,
                        reinterpret_cast<const BYTE*>(entry.text.c_str()),
                        static_cast<DWORD>((entry.text.size() + 1) * sizeof(wchar_t)));
}

bool Exists(const Key& classes, const std::wstring& path) {
  Key key;
  return RegOpenKeyExW(classes.Get(), path.c_str(), 0, KEY_READ, key.Receive()) == ERROR_SUCCESS;
}

/// The first status that tells of a key that stayed.
LSTATUS Delete(const Key& classes, const std::vector<std::wstring>& keys) {
  LSTATUS first = ERROR_SUCCESS;
  for (const std::wstring& key : keys) {
    const LSTATUS status = RegDeleteTreeW(classes.Get(), key.c_str());
    const bool gone = status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
    if (!gone && first == ERROR_SUCCESS) first = status;
  }
  return first;
}

}  // namespace

LSTATUS Register(Audience audience) {
  Library library;
  Key classes;
  LSTATUS status = Read(library);
  if (status == ERROR_SUCCESS) status = OpenClasses(audience, classes);
  if (status != ERROR_SUCCESS) return status;
  for (const Entry& entry : Entries(library)) {
    status = Write(classes, entry);
    if (status != ERROR_SUCCESS) return status;
  }
  return ERROR_SUCCESS;
}

LSTATUS Unregister(Audience audience) {
  Library library;
  Key classes;
  LSTATUS status = Read(library);
  if (status == ERROR_SUCCESS) status = OpenClasses(audience, classes);
  if (status != ERROR_SUCCESS) return status;
  std::vector<std::wstring> keys{ClassKey(), InterfaceKey(), LibraryFileKey(library, kThisWidth)};
  if (!Exists(classes, LibraryFileKey(library, kOtherWidth))) {
    keys.push_back(LibraryKey(library));
    keys.push_back(ProgId(library));
  }
  return Delete(classes, keys);
}

}  // namespace vok::windows
