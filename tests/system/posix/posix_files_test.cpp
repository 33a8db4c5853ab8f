#include "system/posix/posix_files.h"

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "system/posix/temporary_file.h"
#include "tests/support/failures.h"
#include "tests/support/temporary_folder.h"

namespace {

std::function<void()> at_next_status;
bool is_status_unknown = false;
int folder_sync_error = 0;
int chown_error = 0;
int chmod_error = 0;
mode_t mode_seen_by_chown = 0;

mode_t ModeOf(int file) {
  struct stat status {};
  ::fstat(file, &status);
  return status.st_mode;
}

}  // namespace

// In place of the C library's: the first, which may do something else before, and the second fail
// when they are told to; the third fails for folders with the error that is set; the fourth notes
// what a file's permissions are before they are made those of the file that it replaces.
extern "C" int fstat(int file, struct stat* status) noexcept {
  if (at_next_status) std::exchange(at_next_status, nullptr)();
  if (is_status_unknown) {
    errno = EIO;
    return -1;
  }
  return static_cast<int>(::syscall(SYS_newfstatat, file, "", status, AT_EMPTY_PATH));
}

extern "C" int StatOfPath(const char* path, struct stat* status) noexcept asm("stat");
extern "C" int StatOfPath(const char* path, struct stat* status) noexcept {
  if (is_status_unknown) {
    errno = EIO;
    return -1;
  }
  return static_cast<int>(::syscall(SYS_newfstatat, AT_FDCWD, path, status, 0));
}

extern "C" int fsync(int file) {
  if (folder_sync_error != 0 && S_ISDIR(ModeOf(file))) {
    errno = folder_sync_error;
    return -1;
  }
  return static_cast<int>(::syscall(SYS_fsync, file));
}

extern "C" int fchown(int file, uid_t owner, gid_t group) noexcept {
  mode_seen_by_chown = ModeOf(file);
  errno = chown_error;
  if (errno != 0) return -1;
  return static_cast<int>(::syscall(SYS_fchown, file, owner, group));
}

extern "C" int fchmod(int file, mode_t mode) noexcept {
  errno = chmod_error;
  return errno != 0 ? -1 : static_cast<int>(::syscall(SYS_fchmod, file, mode));
}

namespace vok {
namespace {

using test::FailureOf;
using test::NumberOf;

namespace fs = std::filesystem;
namespace number = failure_number;

class PosixFilesTest : public testing::Test {
 protected:
  std::string At(const std::string& name) const { return root_ + "\\" + name; }
  std::string Text(const std::string& name) const { return ReadWholeFile(files_, At(name)); }
  std::ptrdiff_t EntryCount() const {
    return std::distance(fs::directory_iterator(root_), fs::directory_iterator());
  }

  /// What the act fails with for that user, in these groups or in the tester's; in a process of
  /// its own, since the rights that are given up do not come back.
  static int NumberAs(uid_t user, const std::function<void()>& act,
                      const std::vector<gid_t>& groups = {}) {
    const pid_t child = ::fork();
    if (child == 0) {
      const bool is_in_groups = groups.empty() || (::setgroups(groups.size(), groups.data()) == 0 &&
                                                   ::setgid(groups[0]) == 0);
      ::_exit(!is_in_groups || ::setuid(user) != 0 ? 200 : NumberOf(act));
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WEXITSTATUS(status);
  }

  PosixFiles files_;
  test::TemporaryFolder folder_;
  std::string root_ = folder_.path();
};

TEST_F(PosixFilesTest, ReplacesWhatASymbolicLinkLeadsTo) {
  fs::create_directory(root_ + "/far");
  WriteWholeFile(files_, At("far\\real"), "old");
  for (const std::string name : {"real", "none"}) {
    fs::create_symlink("far/" + name, root_ + "/link");
    WriteWholeFile(files_, At("link"), "new");
    EXPECT_TRUE(fs::is_symlink(root_ + "/link"));
    EXPECT_EQ(Text("far\\" + name), "new");
    files_.Delete(At("link"));
  }
  fs::create_symlink("loop", root_ + "/loop");
  EXPECT_EQ(NumberOf([&] { files_.Replace(At("loop")); }), number::kBadFileName);
}

TEST_F(PosixFilesTest, SweepsWhatKilledProcessesLeftAndNothingElse) {
  {
    constexpr std::ptrdiff_t kMany = 100;
    std::vector<std::unique_ptr<FileReplacement>> many;
    while (many.size() < kMany) many.push_back(files_.Replace(At("out.xlsX")));
    EXPECT_EQ(EntryCount(), kMany);
    at_next_status = [&] {
      RemoveTemporaries();
      EXPECT_EQ(EntryCount(), 0) << "a signal comes just after one was made";
    };
    files_.Replace(At("out.xlsX"));
  }
  for (const char* name : {".vokcube-1-2.tmp.txt", ".vokcube-mine.tmp", "vokcube-1-2.tmp"}) {
    files_.Append(At(name), "a person's");
  }
  fs::create_directory(root_ + "/.vokcube-3-0.tmp");
  const auto before = EntryCount();
  files_.Append(At(".vokcube-1-2.tmp"), "left by a process of another machine");
  const pid_t writer = ::fork();
  if (writer == 0) {
    const auto file = files_.Replace(At("out.xlsX"));
    ::raise(SIGSTOP);
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(writer, &status, WUNTRACED);
  EXPECT_EQ(EntryCount(), before + 1) << "the writer swept and has one of its own";
  files_.Replace(At("other"));
  EXPECT_EQ(EntryCount(), before + 1) << "it lives";
  ::kill(writer, SIGKILL);
  ::waitpid(writer, &status, 0);
  EXPECT_EQ(EntryCount(), before + 1) << "it is dead";
  files_.Replace(At("other"));
  EXPECT_EQ(EntryCount(), before);
  is_status_unknown = true;
  files_.Replace(At("other"));
  is_status_unknown = false;
  EXPECT_EQ(EntryCount(), before) << "the system does not say how the new file is";
}

TEST_F(PosixFilesTest, AFileIsThereThoughItsFolderCannotBeBroughtToTheDisk) {
  const struct {
    int error;
    int32_t wanted;
  } rows[] = {{0, 0}, {EACCES, 0}, {EINVAL, 0}, {EIO, number::kDeviceError}, {ENOSPC, 61}};
  for (const auto& [error, wanted] : rows) {
    WriteWholeFile(files_, At("out"), "old");
    folder_sync_error = error;
    const Failure failure = FailureOf([&] { WriteWholeFile(files_, At("out"), "new"); });
    folder_sync_error = 0;
    EXPECT_EQ(failure.number(), wanted);
    EXPECT_EQ(failure.description().find("is in its place, whole") != std::string::npos,
              wanted != 0);
    EXPECT_EQ(Text("out"), "new");
    EXPECT_EQ(EntryCount(), 1);
  }
}

TEST_F(PosixFilesTest, ANewFileIsClosedToOthersFromTheStartWhereTheOldOneWas) {
  WriteWholeFile(files_, At("secret"), "old");
  ::chmod((root_ + "/secret").c_str(), 0600);
  mode_seen_by_chown = 0;
  WriteWholeFile(files_, At("secret"), "new");
  EXPECT_EQ(mode_seen_by_chown & 0777, 0600U);
  EXPECT_EQ(fs::status(root_ + "/secret").permissions(), fs::perms{0600});
}

TEST_F(PosixFilesTest, ANewFileKeepsTheGroupOrGivesItsRightsToNobody) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs files of several users";
  constexpr uid_t kOther = 12345, kUser = 65534;
  constexpr gid_t kOld = 2000, kOwn = 100;
  const struct {
    gid_t also;
    mode_t mode;
    int chown_error;
    int chmod_error;
    gid_t wanted;
    mode_t wanted_mode;
  } rows[] = {{kOld, 0660, 0, 0, kOld, 0660},          {kOwn, 0666, 0, 0, kOwn, 0666},
              {kOwn, 0646, 0, 0, kOwn, 0644},          {kOwn, 0606, 0, 0, kOwn, 0600},
              {kOld, 0660, EINVAL, 0, kOwn, 0600},     {kOld, 0666, EINVAL, 0, kOwn, 0666},
              {kOld, 0660, EOPNOTSUPP, 0, kOwn, 0600}, {kOld, 0666, 0, EOPNOTSUPP, kOld, 0600}};
  ::chmod(root_.c_str(), 0777);
  const std::string path = root_ + "/shared";
  for (const auto& each : rows) {
    const auto replace = [&] {
      chown_error = each.chown_error;
      chmod_error = each.chmod_error;
      WriteWholeFile(files_, At("shared"), "new");
    };
    files_.Append(At("shared"), "old");
    EXPECT_EQ(::chown(path.c_str(), kOther, kOld), 0);
    ::chmod(path.c_str(), each.mode);
    EXPECT_EQ(NumberAs(kUser, replace, {kOwn, each.also}), 0);
    EXPECT_EQ(Text("shared"), "new");
    struct stat status {};
    ::stat(path.c_str(), &status);
    EXPECT_EQ(status.st_gid, each.wanted);
    EXPECT_EQ(status.st_mode & 07777, each.wanted_mode);
    fs::remove(path);
  }
}

TEST_F(PosixFilesTest, NeitherDeletesNorReplacesPipesAndDevices) {
  const auto file = files_.Replace(At("out"));
  ::mkfifo((root_ + "/out").c_str(), 0600);
  fs::create_symlink("out", root_ + "/link");
  for (const std::string name : {"out", "link"}) {
    EXPECT_EQ(NumberOf([&] { files_.Open(At(name)); }), number::kPathAccess);
    EXPECT_EQ(NumberOf([&] { files_.Delete(At(name)); }), number::kPathAccess);
    EXPECT_EQ(NumberOf([&] { files_.Replace(At(name)); }), number::kPathAccess);
  }
  EXPECT_EQ(NumberOf([&] { file->Commit(); }), number::kPathAccess) << "made meanwhile";
  EXPECT_TRUE(fs::is_fifo(root_ + "/out"));
}

TEST_F(PosixFilesTest, WhereAnyoneCanMakeFilesThoseOfOthersAreNeitherFollowedNorReplaced) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs files of several users";
  constexpr uid_t kOther = 12345, kUser = 65534;
  ::chmod(root_.c_str(), 01777);
  fs::create_directory(root_ + "/own");
  EXPECT_EQ(::chown((root_ + "/own").c_str(), kUser, kUser), 0);
  const auto make_link = [&](const std::string& name, uid_t owner) {
    fs::create_symlink("own/target", root_ + "/" + name);
    EXPECT_EQ(::lchown((root_ + "/" + name).c_str(), owner, owner), 0);
  };
  make_link("foreign", kOther);
  make_link("mine", kUser);
  make_link("owners", 0);
  files_.Append(At("shared"), "old");
  EXPECT_EQ(::chown((root_ + "/shared").c_str(), kOther, kOther), 0);
  ::chmod((root_ + "/shared").c_str(), 0666);
  const struct {
    const char* name;
    int32_t wanted;
  } rows[] = {{"foreign", number::kPermissionDenied},
              {"mine", 0},
              {"owners", 0},
              {"shared", number::kPermissionDenied}};
  for (const auto& [name, wanted] : rows) {
    EXPECT_EQ(NumberAs(kUser, [&] { files_.Replace(At(name)); }), wanted) << name;
  }
}

TEST_F(PosixFilesTest, AFileThatADiskCannotLookForIsNotCalledMissing) {
  const auto failure_at = [&](const std::string& name) {
    return NumberOf([&] { EXPECT_FALSE(files_.Exists(At(name))); });
  };
  EXPECT_EQ(failure_at("none"), 0);
  const std::string long_name(300, 'n');
  EXPECT_EQ(failure_at(long_name), 0);
  EXPECT_EQ(NumberOf([&] { files_.Append(At(long_name), "x"); }), number::kBadFileName);
  is_status_unknown = true;
  const int32_t unknown = failure_at("none");
  is_status_unknown = false;
  EXPECT_EQ(unknown, number::kDeviceError);
}

TEST_F(PosixFilesTest, KnowsWhenAFileChanged) {
  files_.Append(At("file"), "x");
  ::setenv("TZ", "Asia/Jerusalem", 1);
  ::tzset();
  const timespec times[2] = {{1707141600, 0}, {1707141600, 0}};  // 5 February 2024, 14:00 UTC
  ::utimensat(AT_FDCWD, (root_ + "/file").c_str(), times, 0);
  EXPECT_DOUBLE_EQ(files_.LastModified(At("file")).serial,
                   Date::FromCivil(2024, 2, 5).serial + 16.0 / 24);
}

TEST_F(PosixFilesTest, MissingRightsLeaveTheOldFile) {
  const auto replace = [&] { WriteWholeFile(files_, At("kept"), "new"); };
  const auto append = [&] { files_.Append(At("more"), "x"); };
  const auto add = [&] { WriteWholeFile(files_, At("more"), "x"); };
  const auto look = [&] { files_.Exists(At("kept")); };
  const struct {
    mode_t folder;
    std::function<void()> action;
  } rows[] = {{0777, replace}, {0555, append}, {0555, add}, {0644, look}};
  WriteWholeFile(files_, At("kept"), "old");
  ::chmod((root_ + "/kept").c_str(), 0444);
  for (const auto& [folder, action] : rows) {
    ::chmod(root_.c_str(), folder);
    EXPECT_EQ(NumberAs(::geteuid() == 0 ? 65534 : ::geteuid(), action), number::kPermissionDenied);
    EXPECT_EQ(Text("kept"), "old");
    EXPECT_EQ(EntryCount(), 1);
  }
  ::chmod(root_.c_str(), 0777);
}

}  // namespace
}  // namespace vok
