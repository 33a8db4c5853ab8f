// The component's own file, loaded as the platform loads it.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/com/interface.h"
#include "system/automation/apartment.h"
#include "system/automation/bstr.h"
#include "system/automation/com_ptr.h"
#include "system/automation/variant.h"
#include "system/windows/utf16.h"

// after the platform's own types
#include <sddl.h>

namespace vok::windows {
namespace {

struct ComponentFileTest : ::testing::Test {
  ComponentFileTest() { Load(); }
  void Load() {
    file = LoadLibraryA(VOK_COMPONENT_FILE);
    if (file == nullptr) return;
    get_class = Entry<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>("DllGetClassObject");
    can_unload = Entry<HRESULT(WINAPI*)()>("DllCanUnloadNow");
  }
  ~ComponentFileTest() override {
    if (file != nullptr) FreeLibrary(file);
  }
  void SetUp() override { ASSERT_NE(file, nullptr) << GetLastError(); }

  template <typename Function>
  Function Entry(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(file, name)));
  }

  ComPtr<IClassFactory> Factory() const {
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(get_class(kClassId, IID_IClassFactory, factory.ReceiveVoid()), S_OK);
    return factory;
  }

  /// Of all heaps of this process.
  static SIZE_T HeldBytes() {
    std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
    heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    SIZE_T bytes = 0;
    for (const HANDLE heap : heaps) {
      PROCESS_HEAP_ENTRY entry{};
      while (HeapWalk(heap, &entry)) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
      }
    }
    return bytes;
  }

  HMODULE file = nullptr;
  HRESULT(WINAPI* get_class)(REFCLSID, REFIID, void**) = nullptr;
  HRESULT(WINAPI* can_unload)() = nullptr;
};

TEST_F(ComponentFileTest, IsHeldByObjectsFactoriesAndLocks) {
  EXPECT_EQ(can_unload(), S_OK);
  ComPtr<_clMe> me;
  {
    const auto factory = Factory();
    EXPECT_EQ(can_unload(), S_FALSE);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    EXPECT_EQ(factory->CreateInstance(nullptr, kInterfaceId, me.ReceiveVoid()), S_OK);
  }
  EXPECT_EQ(can_unload(), S_FALSE);
  me = {};
  EXPECT_EQ(can_unload(), S_FALSE) << "locked";
  EXPECT_EQ(Factory()->LockServer(FALSE), S_OK);
  EXPECT_EQ(can_unload(), S_OK);
}

TEST_F(ComponentFileTest, RefusesWhatItCannotMake) {
  ComPtr<IUnknown> object;
  EXPECT_EQ(get_class(IID_IDispatch, IID_IClassFactory, object.ReceiveVoid()),
            CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(get_class(kClassId, IID_IDispatch, object.ReceiveVoid()), E_NOINTERFACE);
  const auto factory = Factory();
  EXPECT_EQ(factory->CreateInstance(factory.Get(), IID_IUnknown, object.ReceiveVoid()),
            CLASS_E_NOAGGREGATION);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IStream, object.ReceiveVoid()), E_NOINTERFACE);
}

TEST_F(ComponentFileTest, IsMadeByItsManifestWhereItIsNotRegistered) {
  std::wstring manifest = Utf16(VOK_COMPONENT_FILE);
  manifest.replace(manifest.rfind(L'.'), std::wstring::npos, L".Component.manifest");
  ACTCTXW source{};
  source.cbSize = sizeof source;
  source.lpSource = manifest.c_str();
  const HANDLE context = CreateActCtxW(&source);
  ASSERT_NE(context, INVALID_HANDLE_VALUE) << GetLastError();
  const Apartment apartment;
  CLSID id{};
  EXPECT_NE(CLSIDFromProgID(L"VokCubeQ17.clMe", &id), S_OK) << "registered";
  ULONG_PTR cookie = 0;
  ASSERT_NE(ActivateActCtx(context, &cookie), FALSE);
  ComPtr<_clMe> me;
  BSTR version = nullptr;
  EXPECT_EQ(CLSIDFromProgID(L"VokCubeQ17.clMe", &id), S_OK);
  ASSERT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, kInterfaceId, me.ReceiveVoid()),
            S_OK);
  EXPECT_EQ(me->get_Version(&version), S_OK);
  EXPECT_EQ(TakeBstr(version), "16.8.28");
  DeactivateActCtx(0, cookie);
  ReleaseActCtx(context);
}

/// Classes that nobody may change stand in the place of the machine's.
TEST_F(ComponentFileTest, SaysThatItsRegistrationIsNotAllowed) {
  HKEY machine = nullptr, classes = nullptr;
  PSECURITY_DESCRIPTOR reading = nullptr;
  ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, L"VokCubeQ17 test", &machine), ERROR_SUCCESS);
  ASSERT_EQ(RegCreateKeyW(machine, L"Software\\Classes", &classes), ERROR_SUCCESS);
  ASSERT_NE(ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:(A;;KRSD;;;WD)", 1, &reading,
                                                                 nullptr),
            FALSE);
  ASSERT_EQ(RegSetKeySecurity(classes, DACL_SECURITY_INFORMATION, reading), ERROR_SUCCESS);
  ASSERT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine), ERROR_SUCCESS);
  for (const char* entry : {"DllRegisterServer", "DllUnregisterServer"}) {
    EXPECT_EQ(Entry<HRESULT(WINAPI*)()>(entry)(), E_ACCESSDENIED) << entry;
  }
  RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  LocalFree(reading);
  RegCloseKey(classes);
  RegCloseKey(machine);
  RegDeleteTreeW(HKEY_CURRENT_USER, L"VokCubeQ17 test");
}

TEST_F(ComponentFileTest, DescribesItsInterfaceInTheOrderOfTheSlots) {
  ComPtr<_clMe> me;
  ComPtr<ITypeInfo> info;
  ASSERT_EQ(Factory()->CreateInstance(nullptr, kInterfaceId, me.ReceiveVoid()), S_OK);
  ASSERT_EQ(me->GetTypeInfo(0, 0, info.Receive()), S_OK);
  const char* names[] = {"Version", "ShowQCform", "RunQuery", "GetSetNames", "Qinfo"};
  for (DISPID id = 1; id <= 5; ++id) {
    BSTR name = nullptr;
    ASSERT_EQ(info->GetDocumentation(id, &name, nullptr, nullptr, nullptr), S_OK) << id;
    EXPECT_EQ(TakeBstr(name), names[id - 1]);
  }
  ComPtr<ITypeLib> library;
  UINT index = 0;
  BSTR name = nullptr, description = nullptr;
  ASSERT_EQ(info->GetContainingTypeLib(library.Receive(), &index), S_OK);
  ASSERT_EQ(library->GetDocumentation(-1, &name, &description, nullptr, nullptr), S_OK);
  EXPECT_EQ(TakeBstr(name), "VokCubeQ17");
  EXPECT_EQ(TakeBstr(description), "VokCubeQ17 v16.8.28");
}

TEST_F(ComponentFileTest, NeitherObjectsNorItsLoadingLeaveMemoryBehind) {
  const auto make_and_ask = [this] {
    ComPtr<_clMe> me;
    BSTR version = nullptr;
    ASSERT_EQ(Factory()->CreateInstance(nullptr, kInterfaceId, me.ReceiveVoid()), S_OK);
    ASSERT_EQ(me->get_Version(&version), S_OK);
    ASSERT_EQ(TakeBstr(version), "16.8.28");
  };
  const struct {
    const char* what;
    std::function<void()> act;
    int rounds;
    SIZE_T allowed;  ///< in all
  } cases[] = {{"an object", make_and_ask, 10'000, 64 * 1024},
               {"a loading",
                [&] {
                  ASSERT_EQ(can_unload(), S_OK);
                  FreeLibrary(std::exchange(file, nullptr));
                  Load();
                  make_and_ask();
                },
                20, 20 * 4 * 1024}};
  for (const auto& [what, act, rounds, allowed] : cases) {
    for (int i = 0; i < 10; ++i) act();
    const SIZE_T before = HeldBytes();
    for (int i = 0; i < rounds; ++i) act();
    EXPECT_LT(HeldBytes(), before + allowed) << what;
  }
}

}  // namespace
}  // namespace vok::windows
