#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>
#include <fstream>
#include <string>
#include <vector>

#include "providers/sqlite/numbers.h"
#include "tests/providers/sqlite/settings_file.h"

namespace vok {
namespace {

using test::DescriptionOf;
using test::NumberOf;

class DamagedFileTest : public test::SettingsFileTest {
 protected:
  std::string Bytes() const {
    std::ifstream stream(path_, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  }
  void SetBytes(const std::string& bytes) const {
    std::ofstream(path_, std::ios::binary | std::ios::trunc) << bytes;
  }
};

TEST_F(DamagedFileTest, WhatIsNoSettingsFileIsNamedAndLeftAlone) {
  std::string other(4096, '\0');
  other.replace(0, 16, std::string("SQLite format 3\0", 16));
  const std::string head("\0\1\0\0", 4);
  const std::vector<std::pair<std::string, std::string>> rows = {
      {head + "Standard Jet DB" + std::string(4000, '\0'), "is a Jet database"},
      {head + "Standard ACE DB" + std::string(4000, '\0'), "is a Jet database"},
      {head + "Standard Jet DB", "is a Jet database"},
      {"", "is empty"},
      {"x", "cut short"},
      {std::string(100000, 'x'), "no settings database"},
      {other, path_},
  };
  for (const auto& [bytes, words] : rows) {
    SetBytes(bytes);
    EXPECT_EQ(NumberOf([&] { Connect(); }), failure_number::kUnspecified) << words;
    const std::string text = DescriptionOf([&] { Connect(); });
    EXPECT_NE(text.find(words), std::string::npos) << text;
    EXPECT_NE(text.find(path_), std::string::npos) << text;
    EXPECT_EQ(Bytes(), bytes) << words;
    EXPECT_FALSE(std::filesystem::exists(path_ + "-journal"));
  }
  std::filesystem::remove(path_);
  std::filesystem::create_directory(path_);
  EXPECT_NE(DescriptionOf([&] { Connect(); }).find("is a folder"), std::string::npos);
}

TEST_F(DamagedFileTest, ForeignAndNewerDatabasesAreLeftAlone) {
  CreateFile();
  const std::string ours = Bytes();
  for (const std::size_t place : {std::size_t{71}, std::size_t{63}}) {  // application id, version
    std::string changed = ours;
    changed[place] = static_cast<char>(changed[place] + 1);
    SetBytes(changed);
    const char* words = place == 71 ? "another program" : "another version";
    EXPECT_NE(DescriptionOf([&] { Connect(); }).find(words), std::string::npos);
    EXPECT_EQ(Bytes(), changed);
  }
}

TEST_F(DamagedFileTest, CutAtAnyLengthItFailsClearly) {
  CreateFile();
  AddMany(*Connect(), 100);
  const std::string whole = Bytes();
  for (std::size_t length = 0; length < whole.size(); length += whole.size() / 97) {
    SetBytes(whole.substr(0, length));
    EXPECT_EQ(NumberOf([&] { Connect(); }), failure_number::kUnspecified) << length;
  }
}

TEST_F(DamagedFileTest, ChangedBytesNeverCrash) {
  CreateFile();
  {
    const auto connection = Connect();
    for (int row = 0; row < 40; ++row) Add(*connection, "set " + std::to_string(row), "caption");
  }
  const std::string whole = Bytes();
  for (std::size_t place = 0; place < whole.size(); place += 61) {
    std::string changed = whole;
    changed[place] = static_cast<char>(~changed[place]);
    SetBytes(changed);
    const int32_t number = NumberOf([&] {
      const auto connection = Connect();
      Names(*connection, "select * from Sets where SetName like 'set *'");
    });
    const bool known = number == 0 || number == failure_number::kUnspecified ||
                       number == failure_number::kNoTable || number == failure_number::kNoColumn ||
                       number == failure_number::kReadOnly;
    EXPECT_TRUE(known) << "byte " << place << " gave " << number;
  }
}

// Runs in a child that gives up rights; its status is 0 when the action ended with `expected`.
int InChild(const std::function<void()>& prepare, const std::function<void()>& action,
            int32_t expected, const std::string& words) {
  const pid_t child = ::fork();
  if (child == 0) {
    prepare();
    try {
      action();
    } catch (const Failure& failure) {
      const bool clear = failure.description().find(words) != std::string::npos;
      if (failure.number() != expected || !clear) {
        std::fprintf(stderr, "%d %s\n", failure.number(), failure.what());
      }
      ::_exit(failure.number() == expected && clear ? 0 : 1);
    }
    ::_exit(2);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WEXITSTATUS(status);
}

TEST_F(DamagedFileTest, FullDiskKeepsTheOldRows) {
  CreateFile();
  Add(*Connect(), "old");
  const auto limit = [&] {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit size{std::filesystem::file_size(path_), std::filesystem::file_size(path_)};
    ::setrlimit(RLIMIT_FSIZE, &size);
  };
  const auto save = [&] {
    const auto connection = Connect();
    connection->BeginSave();
    Run(*connection, "delete * from Sets");
    AddMany(*connection, 2000);
    connection->CommitSave();
  };
  EXPECT_EQ(InChild(limit, save, failure_number::kUnspecified, "Nothing was changed"), 0);
  EXPECT_EQ(Names(*Connect(), "Sets"), std::vector<std::string>{"old"});
}

struct Mounted {
  std::string folder;
  ~Mounted() { ::umount2(folder.c_str(), MNT_DETACH); }
};

TEST_F(DamagedFileTest, FullFileSystemKeepsTheOldRows) {
  if (::mount("none", root_.c_str(), "tmpfs", 0, "size=128k") != 0) {
    GTEST_SKIP() << "no right to mount a small file system";
  }
  const Mounted mounted{root_};
  CreateFile();
  Add(*Connect(), "old");
  const auto connection = Connect();
  const auto fill = [&] {
    connection->BeginSave();
    AddMany(*connection, 2000);
    connection->CommitSave();
  };
  const std::string text = DescriptionOf(fill);
  EXPECT_NE(text.find("disk is full"), std::string::npos) << text;
  connection->RollbackSave();
  EXPECT_EQ(Names(*Connect(), "Sets"), std::vector<std::string>{"old"});
}

TEST_F(DamagedFileTest, ReadOnlyFileOrFolderCanBeReadAndRefusesToBeWritten) {
  CreateFile();
  Add(*Connect(), "old");
  ::chmod(path_.c_str(), 0444);
  const auto drop_rights = [] {
    if (::geteuid() == 0 && ::setuid(65534) != 0) ::_exit(200);
  };
  const auto write = [&] {
    const auto connection = Connect();
    if (Names(*connection, "Sets").size() != 1) ::_exit(201);
    Add(*connection, "new");
  };
  EXPECT_EQ(InChild(drop_rights, write, failure_number::kReadOnly, "must not be written"), 0);
  ::chmod(path_.c_str(), 0666);
  ::chmod(root_.c_str(), 0555);
  EXPECT_EQ(InChild(drop_rights, write, failure_number::kReadOnly, "permissions"), 0);
  std::filesystem::remove(path_);
  const auto create = [&] { CreateFile(); };
  EXPECT_EQ(InChild(drop_rights, create, failure_number::kUnspecified, "permissions"), 0);
}

}  // namespace
}  // namespace vok
