#include "system/windows/windows_registry.h"

#include <gtest/gtest.h>

#include "native.h"
#include "system/windows/system_header.h"
#include "tests/support/temporary_folder.h"

namespace vok::windows {
namespace {

constexpr const wchar_t* kKey = L"Software\\Vok\\Varnel 17 test";

class WindowsRegistryTest : public testing::Test {
 protected:
  WindowsRegistryTest() { ::RegCreateKeyW(HKEY_CURRENT_USER, kKey, &key_); }
  ~WindowsRegistryTest() override {
    ::RegCloseKey(key_);
    ::RegDeleteKeyW(HKEY_CURRENT_USER, kKey);
  }
  void Set(const wchar_t* name, DWORD type, const std::wstring& text) {
    ::RegSetValueExW(key_, name, 0, type, reinterpret_cast<const BYTE*>(text.c_str()),
                     static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }
  /// As the settings folder is read: size first, then a buffer of blanks.
  std::string Read(const std::string& name) {
    RegistryKey opened = 0;
    EXPECT_EQ(registry_.OpenKey(kCurrentUser, "software\\vok\\VARNEL 17 test", opened), 0);
    uint32_t type = 0;
    uint32_t size = 0;
    std::string value = "absent";
    if (registry_.QueryValue(opened, name, type, nullptr, size) == 0) {
      std::string buffer(size, ' ');
      EXPECT_EQ(registry_.QueryValue(opened, name, type, &buffer, size), 0);
      value = std::to_string(type) + " " + buffer.substr(0, buffer.find('\0'));
      EXPECT_EQ(buffer.size(), size);
      --size;
      EXPECT_EQ(registry_.QueryValue(opened, name, type, &buffer, size), ERROR_MORE_DATA);
    }
    EXPECT_EQ(registry_.CloseKey(opened), 0);
    return value;
  }

  HKEY key_ = nullptr;
  WindowsRegistry registry_;
};

TEST_F(WindowsRegistryTest, ReadsTextsOfAnyScript) {
  Set(L"MDBPath", REG_SZ, L"C:\\Data\\M\u00FCnchen");
  Set(L"Expanded", REG_EXPAND_SZ, L"%TEMP%");
  Set(L"Beyond", REG_SZ, L"C:\\\u05D4\u05D2 \U0001F4D7");
  Set(L"\u05E9\u05DD", REG_SZ, L"C:\\");
  EXPECT_EQ(Read("mdbpath"), "1 C:\\Data\\München");
  EXPECT_EQ(Read("Beyond"), "1 C:\\הג 📗") << "of no code page";
  EXPECT_EQ(Read("שם"), "1 C:\\");
  EXPECT_EQ(Read("Expanded"), "2 %TEMP%");
  EXPECT_EQ(Read("None"), "absent");
  RegistryKey opened = 0;
  EXPECT_EQ(registry_.OpenKey(kCurrentUser, "Software\\Vok\\none", opened), ERROR_FILE_NOT_FOUND);
  EXPECT_NE(registry_.CloseKey(0x7FFFFFF0), 0);
}

TEST_F(WindowsRegistryTest, ReadsIniTextsInTheSystemsCodePage) {
  const test::TemporaryFolder folder;
  test::NativeFiles files;
  WriteWholeFile(files, folder.File("Qel.ini"), "[Qel]\r\nUmlaut=\xFC\r\n");
  for (const uint32_t size : {255U, 2U}) {
    std::string buffer(255, ' ');
    EXPECT_EQ(registry_.PrivateProfileString("Qel", "Umlaut", buffer, size, folder.File("Qel.ini")),
              2U);
    EXPECT_EQ(buffer.substr(0, 3), std::string("ü\0", 3));
    EXPECT_EQ(buffer.size(), 255U);
  }
}

}  // namespace
}  // namespace vok::windows
