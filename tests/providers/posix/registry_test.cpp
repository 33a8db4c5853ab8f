#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/failure.h"
#include "providers/command_line/overriding_registry.h"
#include "providers/posix/file_registry.h"
#include "providers/posix/icu_locale.h"
#include "providers/posix/ini_text.h"
#include "providers/posix/posix_files.h"
#include "tests/support/temporary_folder.h"

namespace vok {
namespace {

const std::string kHeader = "Windows Registry Editor Version 5.00\r\n\r\n";
const std::string kKey = "[HKEY_CURRENT_USER\\Software\\Vok\\Varnel 17]\r\n";

std::string Utf16(const std::string& ascii) {
  std::string bytes = "\xFF\xFE";
  for (const char c : ascii) bytes += std::string{c, '\0'};
  return bytes;
}

class RegistryTest : public testing::Test {
 protected:
  void SetFile(const std::string& name, const std::string& bytes) {
    WriteWholeFile(files_, root_ + "/" + name, bytes);
  }
  // The text of a REG_SZ value as its readers read it; "-" and the status or type when there is
  // none.
  static std::string Read(Registry& registry, const std::string& path, const std::string& name) {
    RegistryKey key = 0;
    if (const int32_t status = registry.OpenKey(kCurrentUser, path, key); status != 0) {
      return "-key " + std::to_string(status);
    }
    uint32_t type = 0;
    uint32_t size = 0;
    const int32_t status = registry.QueryValue(key, name, type, nullptr, size);
    std::string buffer(size, ' ');
    if (status == 0) {
      EXPECT_EQ(registry.QueryValue(key, name, type, &buffer, size), 0);
    }
    EXPECT_EQ(registry.CloseKey(key), 0);
    if (status != 0) return "-value " + std::to_string(status);
    if (type != kRegistryString) return "-type " + std::to_string(type);
    return buffer.substr(0, buffer.find('\0'));
  }

  PosixFiles files_;
  IcuLocale locale_{"en_GB"};
  test::TemporaryFolder folder_;
  std::string root_ = folder_.path();
};

TEST_F(RegistryTest, ReadsWhatTheStandardTextHolds) {
  const std::string path = "Software\\Vok\\Varnel 17";
  const std::vector<std::pair<std::string, std::string>> rows = {
      {kHeader + kKey + "\"MDBPath\"=\"C:\\\\Data\\\\x\"", "C:\\Data\\x"},
      {"REGEDIT4\n" + kKey + "\"mdbpath\"=\"/s/\\\"q\\\"\"\n", "/s/\"q\""},
      {"\xEF\xBB\xBF" + kHeader + kKey + "\"MDBPath\"=\"מסד\"", "מסד"},
      {Utf16(kHeader + kKey + "\"MDBPath\"=\"C:\\\\u\""), "C:\\u"},
      {kHeader + "[hkey_current_user\\SOFTWARE\\vok\\varnel 17]\n\"MDBPATH\" = \"a\"", "a"},
      {kHeader + kKey + "; c\r\n\"Other\"=\"x\"\r\n\"MDBPath\"=\"first\"\r\n\"MDBPath\"=\"last\"",
       "last"},
      {kHeader + kKey + "\"MDBPath\"=\"\"", ""},
      {kHeader + kKey + "\"MDBPath\"=hex(2):43,00,\\\r\n  3a,00,00,00", "-type 2"},
      {kHeader + kKey + "\"MDBPath\"=dword:0000000a", "-type 4"},
      {kHeader + kKey + "\"MDBPath\"=hex:01,02", "-type 3"},
      {kHeader + kKey + "\"MDBPath\"=hex(1):41,00", "A"},
      {kHeader + kKey + "\"MDBPath\"=\"a\"\n\"MDBPath\"=-", "-value 2"},
      {kHeader + kKey + "@=\"a\"", "-value 2"},
      {kHeader + kKey + "\"MDBPath\"=\"not closed", "-value 2"},
      {kHeader + kKey + "\"MDBPath\"=hex:zz", "-value 2"},
      {kHeader + kKey + "\"MDBPath\"=dword:123456789", "-value 2"},
      {kHeader + kKey + "\"MDBPath\"=\"a\"\n[-HKEY_CURRENT_USER\\Software\\Vok]", "-key 2"},
      {kHeader + "[HKEY_LOCAL_MACHINE\\Software\\Vok\\Varnel 17]\n\"MDBPath\"=\"a\"", "-key 2"},
      {kHeader + "[HKEY_CURRENT_USER\\Software\\Vok\\Varnel 17\\Below]", "-value 2"},
      {kHeader + "[HKEY_CURRENT_USER\\Software\\Vok\\Varnel 171]", "-key 2"},
      {kHeader, "-key 2"},
      {"", "-key 1015"},
      {"something else", "-key 1015"},
  };
  FileRegistry registry(files_, locale_, root_ + "/r.reg");
  EXPECT_EQ(Read(registry, path, "MDBPath"), "-key 2");
  for (const auto& [bytes, value] : rows) {
    SetFile("r.reg", bytes);
    EXPECT_EQ(Read(registry, path, "MDBPath"), value) << bytes;
  }
}

TEST_F(RegistryTest, HandlesAndBuffersAreChecked) {
  SetFile("r.reg", kHeader + kKey + "\"MDBPath\"=\"abc\"");
  FileRegistry registry(files_, locale_, root_ + "/r.reg");
  RegistryKey parent = 0;
  RegistryKey key = 0;
  ASSERT_EQ(registry.OpenKey(kCurrentUser, "software", parent), 0);
  ASSERT_EQ(registry.OpenKey(parent, "Vok\\Varnel 17", key), 0);
  uint32_t type = 0;
  uint32_t size = 3;
  std::string buffer(3, ' ');
  EXPECT_NE(registry.QueryValue(key, "MDBPath", type, &buffer, size), 0);
  EXPECT_EQ(buffer, "   ");
  EXPECT_EQ(size, 4U);
  EXPECT_EQ(registry.CloseKey(key), 0);
  EXPECT_NE(registry.CloseKey(key), 0);
  EXPECT_NE(registry.QueryValue(key, "MDBPath", type, nullptr, size), 0);
  EXPECT_NE(registry.OpenKey(key, "x", parent), 0);
}

TEST_F(RegistryTest, AnotherSettingsFolderCanBeGiven) {
  const std::string path = "software\\vok\\varnel 17";
  SetFile("r.reg", kHeader + kKey + "\"MDBPath\"=\"below\"\n\"Other\"=\"o\"");
  FileRegistry below(files_, locale_, root_ + "/r.reg");
  OverridingRegistry registry(below, locale_, "/given");
  EXPECT_EQ(Read(registry, path, "mdbpath"), "/given");
  EXPECT_EQ(Read(registry, path, "Other"), "o");
  EXPECT_EQ(Read(registry, "Software\\Other", "MDBPath"), "-key 2");
  FileRegistry none(files_, locale_, root_ + "/none.reg");
  OverridingRegistry alone(none, locale_, "/given");
  EXPECT_EQ(Read(alone, path, "MDBPath"), "/given");
  EXPECT_EQ(Read(alone, path, "Other"), "-value 2");
}

TEST(IniText, IsReadAsThePrivateProfileCallReads) {
  const IcuLocale locale("en_GB");
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"[Qel]\r\nQelUILanguage=Heb\r\n", "Heb"},
      {"[qel]\nQELUILANGUAGE = Heb ", "Heb"},
      {"\xEF\xBB\xBF[ Qel ]\nQelUILanguage=\" H b \"", " H b "},
      {Utf16("[Qel]\nQelUILanguage='x'"), "x"},
      {"[Qel]\nQelUILanguage=\"x'", "\"x'"},
      {"[Qel]\nQelUILanguage=a=b;c", "a=b;c"},
      {"[Qel]\nQelUILanguage=1\nQelUILanguage=2", "1"},
      {"[Qel]\n;QelUILanguage=1\n QelUILanguage=2", "2"},
      {"[Other]\nQelUILanguage=1\n[Qel]\nQelUILanguage=2", "2"},
      {"[Qel]\nx=1\n[Other]\nQelUILanguage=1\n[Qel]\nQelUILanguage=2", ""},
      {"[Qel\nQelUILanguage=2", "2"},
      {"QelUILanguage=1", ""},
      {"[Qel]\nQelUILanguage", ""},
      {"", ""},
  };
  for (const auto& [bytes, value] : rows) {
    EXPECT_EQ(IniValue(locale, bytes, "Qel", "QelUILanguage"), value) << bytes;
  }
}

TEST_F(RegistryTest, ProfileTextsAreCutAtWholeCharacters) {
  FileRegistry registry(files_, locale_, root_ + "/none.reg");
  struct Row {
    std::string value;
    uint32_t size;
    std::string copied;
  };
  const std::vector<Row> rows = {
      {"abc", 5, "abc"}, {"abc", 4, "abc"}, {"abc", 3, "ab"},
      {"abc", 1, ""},    {"אב", 5, "אב"},   {"אב", 4, "א"},
      {"😀", 4, ""},      {"", 255, ""},     {std::string(300, 'x'), 255, std::string(254, 'x')},
  };
  for (const Row& row : rows) {
    SetFile("Qel.ini", "[Qel]\nk=" + row.value);
    std::string buffer(row.size, ' ');
    const std::string file = root_ + "\\Qel.ini";
    EXPECT_EQ(registry.PrivateProfileString("Qel", "k", buffer, row.size, file), row.copied.size());
    EXPECT_EQ(buffer.substr(0, buffer.find('\0')), row.copied);
    EXPECT_EQ(buffer.size(), row.size);
  }
  std::string buffer(10, ' ');
  EXPECT_EQ(registry.PrivateProfileString("Qel", "k", buffer, 10, root_ + "\\none.ini"), 0U);
  EXPECT_EQ(buffer[0], '\0');
}

TEST(FileRegistry, IsFoundByTheEnvironment) {
  ::setenv("HOME", "/home/u", 1);
  ::unsetenv("XDG_CONFIG_HOME");
  ::unsetenv("VOKCUBE_REGISTRY");
  EXPECT_EQ(FileRegistry::FileFromEnvironment(), "/home/u/.config/vokcube/registry.reg");
  ::setenv("XDG_CONFIG_HOME", "/cfg", 1);
  EXPECT_EQ(FileRegistry::FileFromEnvironment(), "/cfg/vokcube/registry.reg");
  ::setenv("VOKCUBE_REGISTRY", "/r.reg", 1);
  EXPECT_EQ(FileRegistry::FileFromEnvironment(), "/r.reg");
}

}  // namespace
}  // namespace vok
