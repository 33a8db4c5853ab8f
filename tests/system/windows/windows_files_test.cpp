#include "system/windows/windows_files.h"

#include <gtest/gtest.h>

#include <atomic>
#include <iterator>
#include <string>
#include <thread>

#include "platform/failure.h"
#include "providers/database/sqlite/folder_lock.h"
#include "system/windows/path_claim.h"
#include "system/windows/system_error.h"
#include "system/windows/utf16.h"
#include "system/windows/windows_clock.h"
#include "tests/support/failures.h"
#include "tests/support/temporary_folder.h"

namespace vok::windows {
namespace {

using test::FailureOf;
using test::NumberOf;

class WindowsFilesTest : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_.path() + "\\" + name; }
  void Put(const std::string& name, const std::string& text) {
    WriteWholeFile(files_, Path(name), text);
  }
  std::string Text(const std::string& name) const { return ReadWholeFile(files_, Path(name)); }
  std::size_t Names() const {
    return static_cast<std::size_t>(std::distance(
        std::filesystem::directory_iterator(std::filesystem::path(folder_.path())), {}));
  }

  test::TemporaryFolder folder_;
  WindowsFiles files_;
};

TEST_F(WindowsFilesTest, AFileInTheMakingIsNotSweptByAnotherWriter) {
  std::atomic<bool> done = false;
  std::thread other([&] {
    while (!done) files_.Replace(Path("other"));  // sweeps, and gives up
  });
  std::string failures;
  for (int i = 0; i < 200; ++i) {
    const Failure failure = FailureOf([&] { Put("book.xlsX", std::to_string(i)); });
    if (failure.number() != 0) failures += failure.description() + '\n';
  }
  done = true;
  other.join();
  EXPECT_EQ(failures, "");
  EXPECT_EQ(Text("book.xlsX"), "199");
  EXPECT_EQ(Names(), 1U);
}

TEST_F(WindowsFilesTest, AFileThatAProgramHoldsOpenIsRefusedAndLeft) {
  Put("book.xlsX", "old");
  const Handle other(::CreateFileW(WidePath(Path("book.xlsX")).c_str(), GENERIC_READ,
                                   FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(other.IsOpen());
  for (const bool replace : {false, true}) {
    const Failure failure =
        FailureOf([&] { replace ? Put("book.xlsX", "new") : files_.Delete(Path("book.xlsX")); });
    EXPECT_EQ(failure.number(), failure_number::kPermissionDenied);
    EXPECT_NE(failure.description().find("Close the program"), std::string::npos)
        << failure.description();
  }
  EXPECT_EQ(Text("book.xlsX"), "old");
  EXPECT_EQ(Names(), 1U);
}

TEST_F(WindowsFilesTest, RefusesWhatOnlyThisSystemRefuses) {
  Put("read-only", "x");
  const std::wstring wide = WidePath(Path("read-only"));
  ::SetFileAttributesW(wide.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(NumberOf([&] { Put("read-only", "y"); }), failure_number::kPermissionDenied);
  ::SetFileAttributesW(wide.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(NumberOf([&] { files_.Open(Path("a*b?")); }), failure_number::kBadFileName);
  EXPECT_EQ(NumberOf([&] { files_.Open("NUL"); }), failure_number::kPathAccess);
}

TEST_F(WindowsFilesTest, HoldsAClaimedPathByAnySpellingUntilTheHolderIsGone) {
  auto claim = ClaimPath(Path("Book.xlsX"));
  for (const std::string& spelling :
       {Path("Book.xlsX"), Path("BOOK.XLSX"), folder_.path() + "/.\\book.xlsx"}) {
    EXPECT_THROW(ClaimPath(spelling), Failure) << spelling;
  }
  EXPECT_NO_THROW(ClaimPath(Path("Book2.xlsX")));
  claim.reset();
  EXPECT_NO_THROW(ClaimPath(Path("Book.xlsX")));
  EXPECT_NO_THROW(ClaimPath(Path("no folder\\x")));
}

TEST_F(WindowsFilesTest, KnowsWhenAFileChanged) {
  constexpr double kSecond = 1.0 / 86400;
  const double before = WindowsClock().Now().serial;
  Put("file", "x");
  const double changed = files_.LastModified(Path("file")).serial;
  EXPECT_GE(changed, before - 2 * kSecond);
  EXPECT_LE(changed, WindowsClock().Now().serial + kSecond);
}

TEST_F(WindowsFilesTest, AFolderLockKeepsOthersOutOfFoldersOfAnyName) {
  for (const char* name : {"plain", "הגדרות 📗"}) {
    const std::string inner = Path(name);
    files_.CreateDirectory(inner);
    const std::string file = files_.NativePath(inner + "/CubToQel.mdb");
    const LockPatience patience;
    const FolderLock alone(file, FolderLock::Kind::kAlone, 1, patience);
    // The lock is a thread's: one that has it already would get it again.
    std::thread([&] {
      EXPECT_THROW(FolderLock(file, FolderLock::Kind::kShared, 1, patience), Failure) << name;
    }).join();
  }
}

}  // namespace
}  // namespace vok::windows
