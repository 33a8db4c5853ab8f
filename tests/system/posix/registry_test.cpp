#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "system/posix/file_registry.h"
#include "system/posix/icu_locale.h"
#include "system/posix/posix_files.h"
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
  /// The text of a REG_SZ value; "-" and the status or type when there is none.
  static std::string Read(Registry& registry, const std::string& path, const std::string& name) {
    RegistryKey key = 0;
    const int32_t opened = registry.OpenKey(kCurrentUser, path, key);
    if (opened != 0) return "-key " + std::to_string(opened);
    uint32_t type = 0;
    uint32_t size = 99;
    std::string buffer(size, ' ');
    const int32_t status = registry.QueryValue(key, name, type, &buffer, size);
    if (status != 0) return "-value " + std::to_string(status);
    return type == kRegistryString ? buffer.substr(0, buffer.find('\0'))
                                   : "-type " + std::to_string(type);
  }

  PosixFiles files_;
  IcuLocale locale_{"en_GB"};
  test::TemporaryFolder folder_;
  std::string root_ = folder_.path();
};

TEST_F(RegistryTest, ReadsWhatTheStandardTextHolds) {
  const std::string path = "Software\\Vok\\Varnel 17";
  std::vector<std::pair<std::string, std::string>> rows = {
      {"REGEDIT4\n" + kKey + "\"mdbpath\"=\"/s/\\\"q\\\"\"\n", "/s/\"q\""},
      {"\xEF\xBB\xBF" + kHeader + kKey + "\"MDBPath\"=\"מסד\"", "מסד"},
      {Utf16(kHeader + kKey + "\"MDBPath\"=\"C:\\\\u\""), "C:\\u"},
      {kHeader + "[hkey_current_user\\SOFTWARE\\vok\\varnel 17]\n\"MDBPATH\" = \"a\"", "a"},
      {kHeader + "[HKEY_LOCAL_MACHINE\\Software\\Vok\\Varnel 17]\n\"MDBPath\"=\"a\"", "-key 2"},
      {kHeader + "[HKEY_CURRENT_USER\\Software\\Vok\\Varnel 17\\Below]", "-value 2"},
      {kHeader + "[HKEY_CURRENT_USER\\Software\\Vok\\Varnel 171]", "-key 2"},
      {"REGEDIT4\n" + kKey + "\"MDBPath\"=hex(1):2f,41,00", "/A"},
      {"", "-key 1015"},
      {"something else", "-key 1015"},
  };
  const std::pair<const char*, const char*> lines[] = {
      {"\"MDBPath\"=\"C:\\\\Data\\\\x\"", "C:\\Data\\x"},
      {"; c\r\n\"Other\"=\"x\"\r\n\"MDBPath\"=\"first\"\r\n\"MDBPath\"=\"last\"", "last"},
      {"\"MDBPath\"=\"\"", ""},
      {"\"MDBPath\"=hex(2):43,00,\\\r\n  3a,00,00,00", "-type 2"},
      {"\"MDBPath\"=dword:0000000a", "-type 4"},
      {"\"MDBPath\"=hex:01,02", "-type 3"},
      {"\"MDBPath\"=hex(1):2f,00,d0,05,00,00", "/א"},
      {"\"MDBPath\"=hex(1):2f,00,\\\r\n  41,00,00,00,42", "/A"},
      {"; C:\\\r\n\"MDBPath\"=\"a\"", "a"},
      {"\"Other\"=\"C:\\\r\n\"MDBPath\"=\"a\"", "a"},
      {"\"MDBPath\"=\"a\"\n\"MDBPath\"=-", "-value 2"},
      {"@=\"a\"", "-value 2"},
      {"\"MDBPath\"=\"not closed", "-value 2"},
      {"\"MDBPath\"=hex:zz", "-value 2"},
      {"\"MDBPath\"=dword:123456789", "-value 2"},
      {"\"MDBPath\"=\"a\"\n[-HKEY_CURRENT_USER\\Software\\Vok]", "-key 2"},
  };
  for (const auto& [line, value] : lines) rows.emplace_back(kHeader + kKey + line, value);
  FileRegistry registry(files_, locale_, {root_ + "/r.reg"});
  EXPECT_EQ(Read(registry, path, "MDBPath"), "-key 2");
  for (const auto& [bytes, value] : rows) {
    SetFile("r.reg", bytes);
    EXPECT_EQ(Read(registry, path, "MDBPath"), value) << bytes;
    EXPECT_EQ(registry.Problem().find("r.reg") != std::string::npos, value == "-key 1015") << bytes;
  }
}

TEST_F(RegistryTest, AValueIsThatOfTheFirstFileThatHasIt) {
  const std::string value = kHeader + kKey + "\"MDBPath\"=";
  const struct {
    std::string own, shared, read;
  } rows[] = {
      {value + "\"/own\"", value + "\"/shared\"", "/own"},
      {kHeader + kKey + "\"Other\"=\"x\"", value + "\"/shared\"", "/shared"},
      {kHeader + kKey, kHeader, "/otherwise"},
      {value + "\"\"", value + "\"/shared\"", ""},
      {value + "\"/own\"", "torn", "-key 1015"},
  };
  const std::string key = locale_.FoldCase("HKEY_CURRENT_USER\\Software\\Vok\\Varnel 17");
  FileRegistry registry(
      files_, locale_, {root_ + "/own.reg", root_ + "/none.reg", root_ + "/shared.reg"},
      {{key, {{locale_.FoldCase("MDBPath"), {kRegistryString, std::string("/otherwise\0", 11)}}}}});
  EXPECT_EQ(Read(registry, "Software\\Vok\\Varnel 17", "MDBPath"), "/otherwise");
  for (const auto& row : rows) {
    SetFile("own.reg", row.own);
    SetFile("shared.reg", row.shared);
    EXPECT_EQ(Read(registry, "Software\\Vok\\Varnel 17", "MDBPath"), row.read) << row.own;
  }
}

TEST_F(RegistryTest, HandlesAndBuffersAreChecked) {
  SetFile("r.reg", kHeader + kKey + "\"MDBPath\"=\"abc\"");
  FileRegistry registry(files_, locale_, {root_ + "/r.reg"});
  RegistryKey parent = 0;
  RegistryKey key = 0;
  ASSERT_EQ(registry.OpenKey(kCurrentUser, "software", parent), 0);
  ASSERT_EQ(registry.OpenKey(parent, "Vok\\Varnel 17", key), 0);
  uint32_t type = 0;
  uint32_t size = 0;
  EXPECT_EQ(registry.QueryValue(key, "MDBPath", type, nullptr, size), 0);
  EXPECT_EQ(size--, 4U);
  std::string buffer(3, ' ');
  EXPECT_NE(registry.QueryValue(key, "MDBPath", type, &buffer, size), 0);
  EXPECT_EQ(buffer + std::to_string(size), "   4");
  EXPECT_EQ(registry.CloseKey(key), 0);
  EXPECT_NE(registry.CloseKey(key), 0);
  EXPECT_NE(registry.QueryValue(key, "MDBPath", type, nullptr, size), 0);
  EXPECT_NE(registry.OpenKey(key, "x", parent), 0);
}

TEST(IniText, IsReadAsThePrivateProfileCallReads) {
  const IcuLocale locale("en_GB");
  const std::pair<std::string, const char*> rows[] = {
      {"[Qel]\r\nLang=Heb\r\n", "Heb"},
      {"[qel]\nLANG = Heb ", "Heb"},
      {"\xEF\xBB\xBF[ Qel ]\nLang=\" H b \"", " H b "},
      {Utf16("[Qel]\nLang='x'"), "x"},
      {"[Qel]\nLang=\"x'", "\"x'"},
      {"[Qel]\nLang=a=b;c", "a=b;c"},
      {"[Qel]\nLang=1\nLang=2", "1"},
      {"[Qel]\n;Lang=1\n Lang=2", "2"},
      {"[Other]\nLang=1\n[Qel]\nLang=2", "2"},
      {"[Qel]\nx=1\n[Other]\nLang=1\n[Qel]\nLang=2", ""},
      {"[Qel\nLang=2", "2"},
      {"Lang=1", ""},
      {"[Qel]\nLang", ""},
      {"", ""}};
  for (const auto& [bytes, value] : rows) {
    EXPECT_EQ(IniValue(locale, bytes, "Qel", "Lang"), value) << bytes;
  }
}

TEST_F(RegistryTest, ProfileTextsAreCutAtWholeCharacters) {
  std::string hebrew;  // 300 characters of two bytes each
  for (int i = 0; i < 300; ++i) hebrew += "א";
  FileRegistry registry(files_, locale_, {root_ + "/none.reg"});
  const struct {
    std::string value;
    uint32_t size;
    std::string copied;
  } rows[] = {{"abc", 3, "ab"}, {"abc", 1, ""}, {"אב", 3, "אב"},
              {"אב", 2, "א"},   {"a😀", 3, "a"}, {hebrew, 255, hebrew.substr(0, 508)}};
  for (const auto& row : rows) {
    SetFile("Qel.ini", "[Qel]\nk=" + row.value);
    std::string buffer(row.size, ' ');
    const std::string file = root_ + "\\Qel.ini";
    EXPECT_EQ(registry.PrivateProfileString("Qel", "k", buffer, row.size, file), row.copied.size());
    EXPECT_EQ(buffer.substr(0, buffer.find('\0')), row.copied);
    EXPECT_EQ(buffer.size(), std::max<std::size_t>(row.size, row.copied.size() + 1));
  }
}

/// Another program cuts the file short while it is read.
class CutFiles : public PosixFiles {
 public:
  std::unique_ptr<FileReader> Open(const std::string& path) const override {
    auto file = PosixFiles::Open(path);
    std::filesystem::resize_file(path, 1);
    return file;
  }
};

TEST_F(RegistryTest, AFileThatIsCutShortWhileItIsReadIsAFailure) {
  const CutFiles files;
  FileRegistry registry(files, locale_, {root_ + "/r.reg"});
  SetFile("r.reg", kHeader + kKey);
  RegistryKey key = 0;
  EXPECT_EQ(registry.OpenKey(kCurrentUser, "Software", key), 1015);
  EXPECT_NE(registry.Problem().find("changed while it was read"), std::string::npos)
      << registry.Problem();
}

TEST(FileRegistry, IsFoundByTheEnvironment) {
  using Paths = std::vector<std::string>;
  const struct {
    const char *own, *config, *shared, *data;
    Paths files;
    const char* folder;
  } rows[] = {
      {"",
       "",
       "",
       "",
       {"/home/u/.config/vokcube/registry.reg", "/etc/xdg/vokcube/registry.reg"},
       "/home/u/.local/share/vokcube"},
      {"",
       "/cfg",
       "/a::b:/c:",
       "/data",
       {"/cfg/vokcube/registry.reg", "/a/vokcube/registry.reg", "/c/vokcube/registry.reg"},
       "/data/vokcube"},
      {"r.reg", "/cfg", "/a", "data", {"r.reg"}, "/home/u/.local/share/vokcube"},
  };
  ::setenv("HOME", "/home/u", 1);
  for (const auto& row : rows) {
    ::setenv("VOKCUBE_REGISTRY", row.own, 1);
    ::setenv("XDG_CONFIG_HOME", row.config, 1);
    ::setenv("XDG_CONFIG_DIRS", row.shared, 1);
    ::setenv("XDG_DATA_HOME", row.data, 1);
    EXPECT_EQ(FileRegistry::FilesFromEnvironment(), row.files);
    EXPECT_EQ(FileRegistry::DataFolderFromEnvironment(), row.folder);
  }
}

}  // namespace
}  // namespace vok
