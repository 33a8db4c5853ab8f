#include "providers/posix/posix_files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "tests/support/failing_files.h"
#include "tests/support/failures.h"
#include "tests/support/temporary_folder.h"

namespace vok {
namespace {

using test::FailureOf;

namespace fs = std::filesystem;
using Number = int32_t;

class PosixFilesTest : public testing::Test {
 protected:
  std::string At(const std::string& name) const { return root_ + "\\" + name; }
  std::string Text(const std::string& path) const {
    const auto map = files_.Map(path);
    const auto bytes = map->Bytes();
    return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  }
  std::size_t EntryCount() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(root_), fs::directory_iterator()));
  }

  PosixFiles files_;
  test::TemporaryFolder folder_;
  std::string root_ = folder_.path();
};

TEST_F(PosixFilesTest, WritesReadsAndDeletesUnderBackslashedPaths) {
  files_.CreateDirectory(At("Log"));
  files_.CreateDirectory(At("Log"));
  EXPECT_TRUE(files_.IsDirectory(root_ + "/Log"));
  EXPECT_FALSE(files_.Exists(At("Log")));
  files_.Append(At("Log\\a.txt"), "one\r\n");
  files_.Append(At("Log\\a.txt"), "two");
  EXPECT_TRUE(files_.Exists(At("Log\\a.txt")));
  EXPECT_EQ(Text(At("Log\\a.txt")), "one\r\ntwo");
  const auto kept = files_.Map(At("Log\\a.txt"));
  files_.Delete(At("Log\\a.txt"));
  EXPECT_FALSE(files_.Exists(At("Log\\a.txt")));
  EXPECT_EQ(kept->Bytes().size(), 8U);
  EXPECT_EQ(files_.NativePath("\\a\\b.mdb"), "/a/b.mdb");
}

TEST_F(PosixFilesTest, ReplacesTheWholeFileOrNothing) {
  const std::string path = At("out.xlsX");
  WriteWholeFile(files_, path, "old");
  ::chmod((root_ + "/out.xlsX").c_str(), 0640);
  {
    const auto replacement = files_.Replace(path);
    replacement->Write(std::as_bytes(std::span("new", 3)));
    EXPECT_EQ(Text(path), "old");
  }
  EXPECT_EQ(Text(path), "old");
  EXPECT_EQ(EntryCount(), 1U);
  WriteWholeFile(files_, path, "new");
  EXPECT_EQ(Text(path), "new");
  EXPECT_EQ(EntryCount(), 1U);
  EXPECT_EQ(fs::status(root_ + "/out.xlsX").permissions(), fs::perms{0640});
}

TEST_F(PosixFilesTest, WhereverAWriteGivesUpTheOldFileStaysAlone) {
  WriteWholeFile(files_, At("out"), "old");
  test::FailingFiles failing(files_, Failure(failure_number::kDiskFull, "full"));
  int failures = 0;
  for (failing.fail_at = 1; Text(At("out")) == "old"; ++failing.fail_at) {
    failing.calls = 0;
    failures += FailureOf([&] { WriteWholeFile(failing, At("out"), "new"); }).number() != 0 ? 1 : 0;
    EXPECT_EQ(EntryCount(), 1U);
  }
  EXPECT_EQ(failures, 3);
  EXPECT_EQ(Text(At("out")), "new");
}

TEST_F(PosixFilesTest, ReplacesWhatASymbolicLinkLeadsTo) {
  fs::create_directory(root_ + "/far");
  WriteWholeFile(files_, At("far\\real"), "old");
  fs::create_symlink("far/real", root_ + "/link");
  WriteWholeFile(files_, At("link"), "new");
  EXPECT_TRUE(fs::is_symlink(root_ + "/link"));
  EXPECT_EQ(Text(At("far\\real")), "new");
  fs::create_symlink("far/none", root_ + "/dangling");
  WriteWholeFile(files_, At("dangling"), "made");
  EXPECT_EQ(Text(At("far\\none")), "made");
  fs::create_symlink("loop", root_ + "/loop");
  EXPECT_EQ(FailureOf([&] { files_.Replace(At("loop")); }).number(), failure_number::kBadFileName);
}

TEST_F(PosixFilesTest, HoldsAClaimedPathByAnySpellingUntilTheHolderIsGone) {
  fs::create_directory_symlink(root_, root_ + "/link");
  auto claim = files_.Claim(At("out.xlsX"));
  for (const std::string& spelling : {At("out.xlsX"), root_ + "/link\\out.xlsX"}) {
    const auto again = [&] { files_.Claim(spelling); };
    EXPECT_EQ(FailureOf(again).number(), 70) << spelling;
  }
  EXPECT_EQ(FailureOf([&] { files_.Claim(At("other.xlsX")); }).number(), 0);
  claim.reset();
  const pid_t other = ::fork();
  if (other == 0) {
    const auto held = files_.Claim(At("out.xlsX"));
    ::raise(SIGSTOP);
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(other, &status, WUNTRACED);
  EXPECT_EQ(FailureOf([&] { files_.Claim(At("out.xlsX")); }).number(), 70);
  ::kill(other, SIGKILL);
  ::waitpid(other, &status, 0);
  EXPECT_EQ(FailureOf([&] { files_.Claim(At("out.xlsX")); }).number(), 0);
  EXPECT_EQ(EntryCount(), 1u);  // the link
}

TEST_F(PosixFilesTest, SaysWhatFailedOnWhichFile) {
  namespace number = failure_number;
  files_.CreateDirectory(At("folder"));
  files_.Append(At("file"), "x");
  ::mkfifo((root_ + "/pipe").c_str(), 0600);
  const std::string long_name(300, 'n');
  struct Row {
    Number number;
    std::string name;
    std::function<void(const std::string&)> action;
  };
  const auto map = [&](const std::string& path) { files_.Map(path); };
  const auto replace = [&](const std::string& path) { files_.Replace(path); };
  const auto append = [&](const std::string& path) { files_.Append(path, "x"); };
  const auto remove = [&](const std::string& path) { files_.Delete(path); };
  const auto create = [&](const std::string& path) { files_.CreateDirectory(path); };
  const auto modified = [&](const std::string& path) { files_.LastModified(path); };
  const auto change = [&](const std::string& path) { files_.ChangeDirectory(path); };
  const std::vector<Row> rows = {
      {number::kFileNotFound, "none", map},        {number::kPathNotFound, "no\\none", map},
      {number::kPathNotFound, "file\\x", map},     {number::kPathAccess, "folder", map},
      {number::kPathAccess, "pipe", map},          {number::kPathAccess, "folder", replace},
      {number::kPathAccess, "pipe", replace},      {number::kPathNotFound, "no\\out", replace},
      {number::kPathAccess, "folder", append},     {number::kPathNotFound, "no\\log", append},
      {number::kBadFileName, long_name, append},   {number::kFileNotFound, "none", remove},
      {number::kPathAccess, "folder", remove},     {number::kFileExists, "file", create},
      {number::kPathNotFound, "no\\deep", create}, {number::kFileNotFound, "none", modified},
      {number::kPathNotFound, "no\\none", change}, {number::kPathNotFound, "file", change},
  };
  for (const Row& row : rows) {
    const Failure failure = FailureOf([&] { row.action(At(row.name)); });
    EXPECT_EQ(failure.number(), row.number) << failure.description();
    EXPECT_NE(failure.description().find(files_.NativePath(row.name)), std::string::npos);
  }
  for (const std::string& path : {std::string(), At(std::string("file\0x", 6))}) {
    EXPECT_EQ(FailureOf([&] { files_.Delete(path); }).number(), number::kBadFileName);
    EXPECT_FALSE(files_.Exists(path));
  }
  EXPECT_TRUE(files_.Exists(At("file")));
}

TEST_F(PosixFilesTest, KnowsWhenAFileChanged) {
  files_.Append(At("file"), "x");
  ::setenv("TZ", "Asia/Jerusalem", 1);
  ::tzset();
  const timespec times[2] = {{1707141600, 0}, {1707141600, 0}};  // 5 February 2024, 14:00 UTC
  ::utimensat(AT_FDCWD, (root_ + "/file").c_str(), times, 0);
  const Date modified = files_.LastModified(At("file"));
  EXPECT_EQ(modified.DayOnly(), Date::FromCivil(2024, 2, 5));
  EXPECT_DOUBLE_EQ(modified.serial, modified.DayOnly().serial + 16.0 / 24);
}

// Runs the action in a child of its own, so that what it gives up there stays with the tests.
Number InChild(const std::function<void()>& prepare, const std::function<void()>& action) {
  const pid_t child = ::fork();
  if (child == 0) {
    prepare();
    try {
      action();
    } catch (const Failure& failure) {
      ::_exit(failure.number());
    }
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WEXITSTATUS(status);
}

TEST_F(PosixFilesTest, FullDiskLeavesTheOldFile) {
  WriteWholeFile(files_, At("out"), "old");
  const auto limit = [] {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{1000, 1000};
    ::setrlimit(RLIMIT_FSIZE, &small);
  };
  const std::string big(5000, 'x');
  EXPECT_EQ(InChild(limit, [&] { WriteWholeFile(files_, At("out"), big); }),
            failure_number::kDiskFull);
  EXPECT_EQ(Text(At("out")), "old");
  EXPECT_EQ(EntryCount(), 1U);
}

TEST_F(PosixFilesTest, ReadOnlyFileOrFolderIsRefused) {
  WriteWholeFile(files_, At("kept"), "old");
  ::chmod((root_ + "/kept").c_str(), 0444);
  const auto drop_rights = [] {
    if (::geteuid() == 0 && ::setuid(65534) != 0) ::_exit(200);
  };
  const auto replace = [&] { WriteWholeFile(files_, At("kept"), "new"); };
  EXPECT_EQ(InChild(drop_rights, replace), failure_number::kPermissionDenied);
  ::chmod(root_.c_str(), 0555);
  const auto append = [&] { files_.Append(At("more"), "x"); };
  EXPECT_EQ(InChild(drop_rights, append), failure_number::kPermissionDenied);
  const auto add = [&] { WriteWholeFile(files_, At("more"), "x"); };
  EXPECT_EQ(InChild(drop_rights, add), failure_number::kPermissionDenied);
  ::chmod(root_.c_str(), 0777);
  EXPECT_EQ(Text(At("kept")), "old");
  EXPECT_EQ(EntryCount(), 1U);
}

}  // namespace
}  // namespace vok
