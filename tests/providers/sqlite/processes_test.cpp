#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tests/providers/sqlite/settings_file.h"

namespace vok {
namespace {

using test::DescriptionOf;
using test::NumberOf;
using namespace std::chrono_literals;

class ProcessesTest : public test::SettingsFileTest {
 protected:
  static pid_t Start(const std::function<void()>& action) {
    const pid_t child = ::fork();
    if (child != 0) return child;
    try {
      action();
    } catch (const Failure& failure) {
      std::fprintf(stderr, "%s\n", failure.what());
      ::_exit(1);
    }
    ::_exit(0);
  }
  static int StatusOf(pid_t child) {
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
  }
  // Replaces a set as the settings are saved: both rows or none.
  void Save(const std::string& name, const std::string& caption) {
    const auto connection = Connect(60);
    connection->BeginSave();
    Run(*connection, "delete * from Sets where SetName like '" + name + " ?'");
    Add(*connection, name + " a", caption);
    Add(*connection, name + " b", caption);
    connection->CommitSave();
  }
};

TEST_F(ProcessesTest, ALockOfAnotherIsWaitedForAndThenNamed) {
  CreateFile();
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t holder = Start([&] {
    const auto connection = Connect();
    connection->BeginSave();
    Add(*connection, "held");
    if (::write(ready[1], "x", 1) != 1) ::_exit(1);
    ::pause();
  });
  char byte;
  ASSERT_EQ(::read(ready[0], &byte, 1), 1);
  const auto connection = Connect(1);
  const auto start = std::chrono::steady_clock::now();
  const auto add = [&] { Add(*connection, "mine"); };
  const std::string text = DescriptionOf(add);
  const auto waited = std::chrono::steady_clock::now() - start;
  EXPECT_GE(waited, 900ms);
  EXPECT_LE(waited, 5s);
  EXPECT_NE(text.find(path_), std::string::npos) << text;
  EXPECT_NE(text.find("1 seconds"), std::string::npos) << text;
  EXPECT_EQ(Names(*connection, "Sets"), std::vector<std::string>{});
  ::kill(holder, SIGKILL);
  StatusOf(holder);
  EXPECT_EQ(NumberOf(add), 0);
  EXPECT_EQ(Names(*connection, "Sets"), std::vector<std::string>{"mine"});
}

TEST_F(ProcessesTest, EightSaveAndLoadAtOnceAndLoseNothing) {
  CreateFile();
  constexpr int kProcesses = 8;
  constexpr int kSaves = 12;
  std::vector<pid_t> children;
  for (int process = 0; process < kProcesses; ++process) {
    children.push_back(Start([&, process] {
      for (int save = 0; save < kSaves; ++save) {
        const std::string name = "p" + std::to_string(process) + " s" + std::to_string(save % 4);
        const std::string caption = std::to_string(save);
        Save(name, caption);
        const auto connection = Connect(60);
        const auto mine =
            Names(*connection, "select Caption from Sets where SetName like '" + name + " ?'");
        if (mine != std::vector<std::string>{caption, caption}) ::_exit(2);
        if (Names(*connection, "Sets").size() % 2 != 0) ::_exit(3);
      }
    }));
  }
  for (const pid_t child : children) EXPECT_EQ(StatusOf(child), 0);
  const auto names = Names(*Connect(), "Sets");
  EXPECT_EQ(names.size(), 8U * 4 * 2);
  EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
}

TEST_F(ProcessesTest, ManyCreateTheFileAndOneDoes) {
  std::vector<pid_t> children;
  for (int process = 0; process < 6; ++process) {
    children.push_back(Start([&] {
      const int32_t number = NumberOf([&] { CreateFile(); });
      if (number == 0) ::_exit(10);
      if (number != failure_number::kUnspecified) ::_exit(1);
    }));
  }
  int made = 0;
  for (const pid_t child : children) {
    const int status = WEXITSTATUS(StatusOf(child));
    EXPECT_TRUE(status == 0 || status == 10) << status;
    made += status == 10 ? 1 : 0;
  }
  EXPECT_EQ(made, 1);
  EXPECT_EQ(Names(*Connect(), "Sets"), std::vector<std::string>{});
}

TEST_F(ProcessesTest, KilledInTheMiddleOfSavesTheFileIsWhole) {
  CreateFile();
  Save("kept", "0");
  for (int round = 0; round < 15; ++round) {
    const pid_t writer = Start([&] {
      for (int save = 0;; ++save) Save("kept", std::to_string(save));
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20 + 13 * round));
    ::kill(writer, SIGKILL);
    StatusOf(writer);
    const auto captions = Names(*Connect(), "select Caption from Sets");
    ASSERT_EQ(captions.size(), 2U);
    EXPECT_EQ(captions[0], captions[1]);
  }
}

}  // namespace
}  // namespace vok
