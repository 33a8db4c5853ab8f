#include "env/environment.h"

#include <gtest/gtest.h>

#include "tests/support/memory_host.h"

namespace vok {
namespace {

constexpr uint32_t kExpandString = 2;

class EnvironmentTest : public testing::Test {
 protected:
  test::MemoryHost memory;
  Environment environment;
};

TEST_F(EnvironmentTest, SettingsFolderIsTheRegistrysStringElseTheComponentsFolder) {
  struct {
    const char* what;
    uint32_t type;
    std::string bytes;
    std::string folder;
  } const cases[] = {
      {"string", kRegistryString, std::string("C:\\Data\0", 8), "C:\\Data"},
      {"closing backslash stays", kRegistryString, std::string("C:\\Data\\\0", 9), "C:\\Data\\"},
      {"no NUL", kRegistryString, "C:\\Data", "C:\\Data"},
      {"cut at the first NUL", kRegistryString, std::string("C:\\Da\0ta\0", 9), "C:\\Da"},
      {"empty", kRegistryString, std::string("\0", 1), "component"},
      {"no bytes at all", kRegistryString, "", "component"},
      {"other type", kExpandString, std::string("C:\\Data\0", 8), "component"},
  };
  for (const auto& [what, type, bytes, folder] : cases) {
    memory.registry.values["MDBPath"] = {type, bytes};
    EXPECT_EQ(FindSettingsFolder(memory.host, environment), folder != "component") << what;
    EXPECT_EQ(environment.SettingsFolder, folder) << what;
    EXPECT_EQ(memory.registry.open, 0) << what << ": key left open";
  }
}

TEST_F(EnvironmentTest, AValueThatIsAbsentOrCannotBeReadIsEmpty) {
  EXPECT_EQ(GetSettingValue(memory.host, environment, "MDBPath"), "") << "no key";
  memory.registry.SetFolder("C:\\Data");
  EXPECT_EQ(GetSettingValue(memory.host, environment, "Other"), "");
  memory.registry.read_status = 234;
  EXPECT_EQ(GetSettingValue(memory.host, environment, "MDBPath"), "");
  EXPECT_EQ(memory.registry.open, 0);
}

TEST_F(EnvironmentTest, ARegistryThatCannotBeReadIsToldOnceForEachReason) {
  memory.registry.SetFolder("C:\\Data");
  for (const char* problem : {"torn", "torn", "locked", "", "locked"}) {
    memory.registry.problem = problem;
    EXPECT_EQ(FindSettingsFolder(memory.host, environment), std::string(problem).empty());
    EXPECT_EQ(environment.RegistryProblem, problem);
  }
  ASSERT_EQ(memory.boxes.boxes.size(), 3U);
  EXPECT_EQ(memory.boxes.boxes[0].text, "torn Without it the settings folder is \"component\".");
  EXPECT_EQ(memory.boxes.boxes[1].text.substr(0, 6), "locked");
}

TEST_F(EnvironmentTest, OpenKeysKeepTheirNames) {
  memory.registry.SetFolder("x");
  OpenKeyTable& table = environment.open_keys;
  EXPECT_EQ(KeyName(table, 100), "");
  GetSettingValue(memory.host, environment, "MDBPath");
  GetSettingValue(memory.host, environment, "MDBPath");
  memory.registry.next_handle = 101;
  GetSettingValue(memory.host, environment, "MDBPath");

  ASSERT_EQ(table.size(), 2U) << "one entry a handle";
  EXPECT_EQ(KeyName(table, 100), "HKEY_CURRENT_USER\\Software\\Vok\\Varnel 17");
  EXPECT_EQ(KeyName(table, 101), KeyName(table, 100));
  EXPECT_EQ(KeyName(table, 102), "");
  EXPECT_EQ(KeyName(table, kClassesRoot), "HKEY_CLASSES_ROOT");
  EXPECT_EQ(KeyName(table, kUsers), "HKEY_USERS");
  EXPECT_FALSE(RegOpenKey(memory.registry, table, kUsers, "Software\\Vok\\Varnel 17"));
  EXPECT_EQ(table.size(), 2U) << "a key that did not open is not recorded";
}

TEST_F(EnvironmentTest, IniValuesComeFromTheSettingsFolderOfTheMoment) {
  memory.registry.ini["C:\\Data\\Qel.ini|Qel|QelUILanguage"] = "2";
  memory.registry.ini["C:\\Data\\Qel.ini|Qel|Long"] = std::string(300, 'x');
  EXPECT_EQ(ReadIniValue(memory.host, environment, "Qel", "QelUILanguage"), "");
  memory.registry.SetFolder("C:\\Data");
  EXPECT_EQ(ReadIniValue(memory.host, environment, "Qel", "QelUILanguage"), "2");
  EXPECT_EQ(ReadIniValue(memory.host, environment, "Qel", "Long"), std::string(254, 'x'));
  EXPECT_EQ(ReadIniValue(memory.host, environment, "Qel", "Long", 299), std::string(299, 'x'));
  EXPECT_EQ(environment.SettingsFolder, "C:\\Data");
}

TEST_F(EnvironmentTest, GoingToTheSettingsFolderNeedsADirectory) {
  for (const char* folder : {"", "missing", "locked"}) {
    memory.files.folders = {"locked"};
    memory.files.refused = {"locked"};
    environment.SettingsFolder = folder;
    EXPECT_EQ(GoToSettingsFolder(memory.host, environment), "") << folder;
    EXPECT_EQ(memory.files.current_directory, "start") << folder;
  }
  memory.files.refused.clear();
  EXPECT_EQ(GoToSettingsFolder(memory.host, environment), "locked");
  EXPECT_EQ(memory.files.current_directory, "locked");
}

}  // namespace
}  // namespace vok
