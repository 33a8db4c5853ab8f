#include <chrono>
#include <cmath>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include "tests/providers/database/sqlite/settings_file.h"

namespace vok {
namespace {

using test::DescriptionOf;
using test::NumberOf;
using test::Start;
using test::StatusOf;
using namespace std::chrono_literals;
using namespace testing;

class ProcessesTest : public test::SettingsFileTest {
 protected:
  // Replaces a set as the settings are saved: both rows or none.
  void Save(const std::string& name, const std::string& caption) {
    const auto connection = Connect(60);
    connection->Begin(Purpose::kSave);
    connection->Execute("delete * from Sets where SetName like '" + name + " ?'");
    Add(*connection, name + " a", caption);
    Add(*connection, name + " b", caption);
    connection->Commit();
  }
};

TEST_F(ProcessesTest, ALockOfAnotherIsWaitedForAndThenNamed) {
  CreateFile();
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t holder = Start([&] {
    const auto connection = Connect();
    connection->Begin(Purpose::kSave);
    Add(*connection, "held");
    if (::write(ready[1], "x", 1) != 1) ::_exit(1);
    ::pause();
  });
  char byte;
  ASSERT_EQ(::read(ready[0], &byte, 1), 1);
  const auto connection = Connect(1);
  const auto start = std::chrono::steady_clock::now();
  const auto add = [&] { Add(*connection, "mine"); };
  EXPECT_THAT(DescriptionOf(add), AllOf(HasSubstr(path_), HasSubstr("1 seconds")));
  EXPECT_THAT(std::chrono::steady_clock::now() - start, AllOf(Ge(900ms), Le(5s)));
  EXPECT_THAT(Names(*connection, "Sets"), IsEmpty());
  const auto again = std::chrono::steady_clock::now();
  EXPECT_EQ(NumberOf([&] { Add(*Connect(20), "mine"); }), failure_number::kUnspecified);
  EXPECT_LT(std::chrono::steady_clock::now() - again, 800ms) << "it was waited for just before";
  ::kill(holder, SIGKILL);
  StatusOf(holder);
  EXPECT_EQ(NumberOf(add), 0);
  EXPECT_EQ(Names(*connection, "Sets"), std::vector<std::string>{"mine"});
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
    const int status = StatusOf(child);
    EXPECT_TRUE(status == 0 || status == 10) << status;
    made += status == 10 ? 1 : 0;
  }
  EXPECT_EQ(made, 1);
  EXPECT_THAT(Names(*Connect(), "Sets"), IsEmpty());
}

TEST_F(ProcessesTest, KilledWhileItIsMadeTheFileIsWholeOrNotThere) {
  int made = 0;
  for (int round = 0; round < 40; ++round) {
    const pid_t maker = Start([&] { CreateFile(); });
    std::this_thread::sleep_for(200us * std::pow(1.21, round));
    ::kill(maker, SIGKILL);
    StatusOf(maker);
    if (!std::filesystem::exists(path_)) continue;
    EXPECT_EQ(NumberOf([&] { Names(*Connect(), "Sets"); }), 0) << round;
    std::filesystem::remove(path_);
    ++made;
  }
  EXPECT_THAT(made, AllOf(Gt(0), Lt(40)))
      << "the kills came too early or too late to show anything";
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
    ASSERT_THAT(captions, ElementsAre(captions.at(0), captions.at(0)));
  }
}

}  // namespace
}  // namespace vok
