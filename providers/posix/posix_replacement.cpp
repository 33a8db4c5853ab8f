#include "providers/posix/posix_replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "providers/file_failures/file_failures.h"

namespace vok {
namespace {

constexpr int kMostLinks = 40;       // as many as the kernel follows
constexpr int kMostAttempts = 1000;  // at a temporary name that is free

std::string FolderOf(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

std::string FollowLinks(std::string path) {
  for (int hop = 0; hop < kMostLinks; ++hop) {
    std::error_code none;
    const auto target = std::filesystem::read_symlink(path, none);
    if (none) return path;
    path = target.is_absolute() ? target.string() : FolderOf(path) + target.string();
  }
  ThrowSystemFailure(ELOOP, "write", path);
}

void RefuseUnwritable(const std::string& target) {
  struct stat status;
  if (::stat(target.c_str(), &status) != 0) return;  // making the temporary will tell
  if (S_ISDIR(status.st_mode)) ThrowSystemFailure(EISDIR, "write", target);
  if (!S_ISREG(status.st_mode)) ThrowNoOrdinaryFile("write", target);
  if (::access(target.c_str(), W_OK) != 0) ThrowSystemFailure(errno, "write", target);
}

// The name survives a crash only when the folder's own entry is on the disk. Some file systems know
// no such operation; there the rename is as safe as it can be.
void SyncFolderOf(const std::string& path) {
  const FileHandle folder = OpenFile(FolderOf(path), O_RDONLY | O_DIRECTORY, "open the folder of");
  if (::fsync(folder.get()) != 0 && errno != EINVAL && errno != ENOTSUP) {
    ThrowSystemFailure(errno, "make sure on the disk of", path);
  }
}

}  // namespace

PosixReplacement::PosixReplacement(const std::string& path) : target_(FollowLinks(path)) {
  RefuseUnwritable(target_);
  CreateTemporary();
  try {
    KeepPermissions();
  } catch (...) {
    Discard();
    throw;
  }
}

void PosixReplacement::CreateTemporary() {
  static std::atomic<unsigned> serial{0};
  const std::string stem = FolderOf(target_) + ".vokcube-" + std::to_string(::getpid()) + "-";
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    const std::string name = stem + std::to_string(serial++) + ".tmp";
    file_ = FileHandle(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (file_.IsOpen()) {
      temporary_ = name;
      return;
    }
    if (errno != EEXIST && errno != EINTR) break;
  }
  ThrowSystemFailure(errno, "write", target_);
}

void PosixReplacement::KeepPermissions() {
  struct stat status;
  if (::stat(target_.c_str(), &status) != 0) return;
  // Only the superuser may give a file away: whose the new file is then stays as it came.
  if (::fchown(file_.get(), status.st_uid, status.st_gid) != 0 && errno != EPERM) {
    ThrowSystemFailure(errno, "keep the owner of", target_);
  }
  if (::fchmod(file_.get(), status.st_mode & 07777) != 0) {
    ThrowSystemFailure(errno, "keep the permissions of", target_);
  }
}

void PosixReplacement::Write(std::span<const std::byte> bytes) {
  try {
    WriteAll(file_, bytes, target_);
  } catch (...) {
    Discard();
    throw;
  }
}

void PosixReplacement::Commit() {
  if (temporary_.empty()) ThrowNothingToCommit(target_);
  int error = ::fsync(file_.get()) == 0 ? 0 : errno;
  if (const int closing = file_.Reset(); error == 0) error = closing;
  if (error == 0 && ::rename(temporary_.c_str(), target_.c_str()) != 0) error = errno;
  if (error != 0) {
    Discard();
    ThrowSystemFailure(error, "write", target_);
  }
  temporary_.clear();
  SyncFolderOf(target_);
}

void PosixReplacement::Discard() noexcept {
  file_.Reset();
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
  temporary_.clear();
}

}  // namespace vok
