#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>

#include "providers/database/sqlite/rows.h"
#include "tests/providers/database/sqlite/settings_file.h"

namespace vok {
namespace {

using test::FailureOf;
using test::NumberOf;
using namespace testing;

struct DamagedFileTest : test::SettingsFileTest {
  std::string Bytes() const { return ReadWholeFile(files_, path_); }
  void SetBytes(const std::string& bytes) const {
    std::ofstream(path_, std::ios::binary | std::ios::trunc) << bytes;
  }
};

int good_reads = 0;  // of the store's, before those that fail

ssize_t BrokenRead(int file, void* bytes, std::size_t size, off64_t from) {
  if (good_reads-- > 0) return ::pread64(file, bytes, size, from);
  errno = EIO;
  return -1;
}

TEST_F(DamagedFileTest, AFileThatItsDiskCannotReadIsNotCalledDamaged) {
  CreateFile();
  sqlite3_vfs* system = sqlite3_vfs_find(nullptr);
  const auto broken = reinterpret_cast<sqlite3_syscall_ptr>(BrokenRead);
  ASSERT_EQ(system->xSetSystemCall(system, "pread64", broken), SQLITE_OK);
  int refused = 0;
  for (; refused < 1000; ++refused) {
    good_reads = refused;
    const Failure failure = FailureOf([&] { Connect(); });
    if (failure.number() == 0) break;
    EXPECT_THAT(failure.description(), AllOf(HasSubstr("cannot read it (Input/output error)"),
                                             HasSubstr("leave it as it is"), HasSubstr(path_)))
        << refused;
  }
  EXPECT_THAT(refused, AllOf(Gt(2), Lt(1000)));
  system->xSetSystemCall(system, "pread64", nullptr);
}

TEST_F(DamagedFileTest, WhatIsNoSettingsFileIsNamedAndLeftAlone) {
  CreateFile();
  std::string foreign = Bytes();
  std::string newer = foreign;
  ++foreign[71];  // the application id
  ++newer[63];    // the version
  std::string other(4096, '\0');
  other.replace(0, 16, std::string("SQLite format 3\0", 16));
  const std::string head("\0\1\0\0", 4);
  const std::pair<std::string, std::string> rows[] = {
      {head + "Standard Jet DB" + std::string(4000, '\0'), "is a Jet database"},
      {"x", "cut short"},
      {std::string(100000, 'x'), "not a settings database"},
      {other, path_},
      {foreign, "another program"},
      {newer, "another version"},
  };
  for (const auto& [bytes, words] : rows) {
    SetBytes(bytes);
    const Failure failure = FailureOf([&] { Connect(); });
    EXPECT_EQ(failure.number(), failure_number::kUnspecified) << words;
    EXPECT_THAT(failure.description(), AllOf(HasSubstr(words), HasSubstr(path_)));
    EXPECT_EQ(Bytes(), bytes) << words;
    EXPECT_FALSE(std::filesystem::exists(path_ + "-journal"));
  }
}

TEST_F(DamagedFileTest, CutOrChangedAnywhereItFailsClearlyOrIsRead) {
  CreateFile();
  for (int i = 0; i < 40; ++i) Add(*Connect(), std::to_string(i), std::string(250, 'x'));
  const std::string whole = Bytes();
  for (std::size_t length = 0; length < whole.size(); length += whole.size() / 97) {
    SetBytes(whole.substr(0, length));
    EXPECT_EQ(NumberOf([&] { Connect(); }), failure_number::kUnspecified) << length;
  }
  for (std::size_t place = 0; place < whole.size(); place += 61) {
    std::string changed = whole;
    changed[place] = static_cast<char>(~changed[place]);
    SetBytes(changed);
    const auto read = [&] { Names(*Connect(), "select * from Sets where SetName like '1*'"); };
    EXPECT_THAT(NumberOf(read), AnyOf(0, failure_number::kUnspecified, failure_number::kNoTable,
                                      failure_number::kNoColumn, failure_number::kReadOnly))
        << "byte " << place;
  }
}

}  // namespace
}  // namespace vok
