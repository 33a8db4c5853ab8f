#include "system/windows/windows_files.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <iterator>
#include <string>
#include <thread>

#include "platform/failure.h"
#include "system/windows/path_claim.h"
#include "system/windows/system_error.h"
#include "system/windows/utf16.h"
#include "system/windows/windows_clock.h"
#include "tests/support/temporary_folder.h"

namespace vok::windows {
namespace {

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

TEST_F(WindowsFilesTest, WritesReadsAndDeletesUnderAnyName) {
  const std::string names[] = {
      "plain.txt", "דוח חודשי.txt", "отчёт.txt",
      "deep\\" + std::string(120, 'a') + "\\" + std::string(120, 'b') + ".x"};
  files_.CreateDirectory(Path("deep"));
  files_.CreateDirectory(Path("deep"));
  files_.CreateDirectory(Path("deep/" + std::string(120, 'a')));
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    EXPECT_FALSE(files_.Exists(Path(name)));
    files_.Append(Path(name), "one\r\n");
    files_.Append(Path(name), "two");
    EXPECT_EQ(Text(name), "one\r\ntwo");
    Put(name, "");
    EXPECT_EQ(Text(name), "");
    EXPECT_TRUE(files_.Exists(Path(name)));
    EXPECT_FALSE(files_.IsDirectory(Path(name)));
    files_.Delete(Path(name));
    EXPECT_FALSE(files_.Exists(Path(name)));
  }
}

TEST_F(WindowsFilesTest, ReplacesTheWholeFileOrNothing) {
  Put("book.xlsX", "old");
  {
    const auto given_up = files_.Replace(Path("book.xlsX"));
    given_up->Write(std::as_bytes(std::span("half", 4)));
    EXPECT_EQ(Names(), 2U);
  }
  EXPECT_EQ(Names(), 1U);
  EXPECT_EQ(Text("book.xlsX"), "old");
  Put("book.xlsX", "new");
  EXPECT_EQ(Text("book.xlsX"), "new");
  EXPECT_EQ(Names(), 1U);
}

TEST_F(WindowsFilesTest, AFileInTheMakingIsNotSweptByAnotherWriter) {
  std::atomic<bool> done = false;
  std::thread other([&] {
    while (!done) files_.Replace(Path("other"));  // sweeps, and gives up
  });
  std::string failures;
  for (int i = 0; i < 200; ++i) {
    try {
      Put("book.xlsX", std::to_string(i));
    } catch (const Failure& failure) {
      failures += failure.description() + '\n';
    }
  }
  done = true;
  other.join();
  EXPECT_EQ(failures, "");
  EXPECT_EQ(Text("book.xlsX"), "199");
  EXPECT_EQ(Names(), 1U);
}

TEST_F(WindowsFilesTest, AnOpenFileKeepsItsContentsWhetherOrNotItCanBeReplaced) {
  Put("ledger.cub", "old");
  const auto open = files_.Open(Path("ledger.cub"));
  std::string stands = "newer";
  try {
    Put("ledger.cub", "newer");
  } catch (const Failure& failure) {  // Wine's file system, and others that are not NTFS
    EXPECT_EQ(failure.number(), failure_number::kPermissionDenied);
    stands = "old";
  }
  std::string held(3, ' ');
  open->Read(0, std::as_writable_bytes(std::span(held)));
  EXPECT_EQ(held, "old");
  EXPECT_EQ(Text("ledger.cub"), stands);
  EXPECT_EQ(Names(), 1U);
}

TEST_F(WindowsFilesTest, AFileThatAProgramHoldsOpenIsRefusedAndLeft) {
  Put("book.xlsX", "old");
  const Handle other(::CreateFileW(WidePath(Path("book.xlsX")).c_str(), GENERIC_READ,
                                   FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(other.IsOpen());
  for (const bool replace : {false, true}) {
    try {
      replace ? Put("book.xlsX", "new") : files_.Delete(Path("book.xlsX"));
      ADD_FAILURE() << "no failure";
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number(), failure_number::kPermissionDenied);
      EXPECT_NE(failure.description().find("Close the program"), std::string::npos)
          << failure.description();
    }
  }
  EXPECT_EQ(Text("book.xlsX"), "old");
  EXPECT_EQ(Names(), 1U);
}

TEST_F(WindowsFilesTest, SaysWhatFailedOnWhichFile) {
  Put("file", "x");
  Put("read-only", "x");
  ::SetFileAttributesW(WidePath(Path("read-only")).c_str(), FILE_ATTRIBUTE_READONLY);
  const struct {
    int32_t number;
    std::function<void()> action;
    std::string named;
  } rows[] = {
      {53, [&] { files_.Open(Path("none")); }, "none"},
      {76, [&] { files_.Open(Path("no folder\\none")); }, "no folder"},
      {53, [&] { files_.Delete(Path("none")); }, "none"},
      {75, [&] { files_.Open(folder_.path()); }, "vokcube-"},
      {75, [&] { files_.Replace(folder_.path()); }, "vokcube-"},
      {76, [&] { files_.Replace(Path("no folder/x")); }, "no folder"},
      {70, [&] { Put("read-only", "y"); }, "read-only"},
      {58, [&] { files_.CreateDirectory(Path("file")); }, "file"},
      {53, [&] { files_.LastModified(Path("none")); }, "none"},
      {52, [&] { files_.Open(Path("a*b?")); }, "a*b?"},
      {52, [&] { files_.Delete(""); }, "empty"},
      {52, [&] { files_.Delete(std::string("a\0b", 3)); }, "NUL"},
      {75, [&] { files_.Open("NUL"); }, "device"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.named);
    try {
      row.action();
      ADD_FAILURE() << "no failure";
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number(), row.number) << failure.description();
      EXPECT_NE(failure.description().find(row.named), std::string::npos) << failure.description();
    }
  }
  ::SetFileAttributesW(WidePath(Path("read-only")).c_str(), FILE_ATTRIBUTE_NORMAL);
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

}  // namespace
}  // namespace vok::windows
