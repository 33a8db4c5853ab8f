#include "system/posix/posix_replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <system_error>

#include "platform/files.h"

namespace vok {
namespace {

constexpr int kMostLinks = 40;  // as many as the kernel follows

std::optional<struct stat> StatusOf(const std::string& path, bool of_link = false) {
  struct stat status;
  const int result = (of_link ? ::lstat : ::stat)(path.c_str(), &status);
  return result == 0 ? std::optional(status) : std::nullopt;
}

/// Whether everyone may make files in the folder, and only their owners remove them.
bool IsSticky(const struct stat& folder) {
  return (folder.st_mode & S_ISVTX) != 0 && (folder.st_mode & (S_IWGRP | S_IWOTH)) != 0;
}

/// In a folder where anyone can put a link, only those of the user or of the folder's owner are
/// followed: the kernel's own rule, which it does not keep for who reads links.
void RefuseForeignLink(const std::string& path) {
  const auto link = StatusOf(path, true);
  const auto folder = StatusOf(FolderOf(path));
  if (!link || !folder || !IsSticky(*folder)) return;
  if (link->st_uid == ::geteuid() || link->st_uid == folder->st_uid) return;
  ThrowFileFailure(failure_number::kPermissionDenied, "write", path,
                   "it is another user's link, in a folder where anyone can make one",
                   "Remove the link, or give another name.");
}

std::string FollowLinks(std::string path) {
  for (int hop = 0; hop < kMostLinks; ++hop) {
    std::error_code none;
    const auto target = std::filesystem::read_symlink(path, none);
    if (none) return path;
    RefuseForeignLink(path);
    path = target.is_absolute() ? target.string() : FolderOf(path) + target.string();
  }
  ThrowSystemFailure(ELOOP, "write", path);
}

void RefuseSpecial(const std::string& target, const struct stat& status) {
  if (S_ISDIR(status.st_mode)) ThrowSystemFailure(EISDIR, "write", target);
  if (!S_ISREG(status.st_mode)) ThrowNoOrdinaryFile("write", target);
}

/// What is known without trying; making the temporary will tell the rest.
void RefuseUnwritable(const std::string& target, const struct stat& status) {
  RefuseSpecial(target, status);
  if (::access(target.c_str(), W_OK) != 0) ThrowSystemFailure(errno, "write", target);
  const auto folder = StatusOf(FolderOf(target));
  const uid_t user = ::geteuid();
  if (folder && (folder->st_mode & S_ISVTX) != 0 && user != 0 && user != status.st_uid &&
      user != folder->st_uid) {
    ThrowSystemFailure(EPERM, "write", target);  // the rename would fail
  }
}

constexpr uid_t kAsItIs = static_cast<uid_t>(-1);

/// False where the user, or the kind of the disk, does not let it be done; the user's namespace may
/// have no number for the owner. Failure for another error.
bool IsDone(int result, const std::string& what, const std::string& path) {
  if (result == 0) return true;
  const std::array<int, 4> not_here = {EPERM, EINVAL, EOPNOTSUPP, ENOSYS};
  if (std::find(not_here.begin(), not_here.end(), errno) == not_here.end()) {
    ThrowSystemFailure(errno, what, path);
  }
  return false;
}

/// The rights of a file that comes to another group: all but the owner get what both the old group
/// and all others had, so nobody gets more than before.
mode_t WithoutGroup(mode_t mode) {
  const mode_t both = (mode >> 3) & mode & S_IRWXO;
  return (mode & S_IRWXU) | both << 3 | both;
}

/// The system's error when the folder's own entries cannot be brought to the disk, else 0: where
/// the folder may not be read, or the file system knows no such operation, it is as safe as it can
/// be.
int SyncFolder(const std::string& folder) {
  const FileHandle file(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const int error = file.IsOpen() && ::fsync(file.get()) == 0 ? 0 : errno;
  return error == EACCES || error == EINVAL || error == ENOTSUP ? 0 : error;
}

}  // namespace

std::string FolderOf(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

PosixReplacement::PosixReplacement(const std::string& path) : target_(FollowLinks(path)) {
  const auto old = StatusOf(target_);
  if (old) RefuseUnwritable(target_, *old);
  // Nobody else looks into what will take the place of a file that is closed to them.
  file_.emplace(FolderOf(target_), old ? S_IRUSR | S_IWUSR : 0666, target_);
  if (old) KeepPermissions(*old);
}

void PosixReplacement::KeepPermissions(const struct stat& old) {
  const int file = file_->handle().get();
  // Only the superuser may give a file away; its group may be any of the user's own.
  if (!IsDone(::fchown(file, old.st_uid, old.st_gid), "keep the owner of", target_)) {
    IsDone(::fchown(file, kAsItIs, old.st_gid), "keep the group of", target_);
  }
  struct stat status;
  if (::fstat(file, &status) != 0) ThrowSystemFailure(errno, "write", target_);
  const mode_t mode = status.st_gid == old.st_gid ? old.st_mode : WithoutGroup(old.st_mode);
  IsDone(::fchmod(file, mode & 07777), "keep the permissions of", target_);
}

void PosixReplacement::Write(std::span<const std::byte> bytes) {
  try {
    WriteAll(file_->handle(), bytes, target_);
  } catch (...) {
    file_->Remove();
    throw;
  }
}

void PosixReplacement::Commit() {
  if (!file_->IsThere()) ThrowNothingToCommit(target_);
  int error = ::fsync(file_->handle().get()) == 0 ? 0 : errno;
  if (error == 0) {
    if (const auto taken = StatusOf(target_)) RefuseSpecial(target_, *taken);
    error = file_->RenameTo(target_);
  }
  if (error != 0) {
    file_->Remove();
    ThrowSystemFailure(error, "write", target_);
  }
  TellUnlessSafe();
}

void PosixReplacement::TellUnlessSafe() const {
  const int error = SyncFolder(FolderOf(target_));
  if (error == 0) return;
  throw FileMayNotLast(FailureNumber(error, target_),
                       "The file \"" + target_ +
                           "\" is in its place, whole, but may be gone after a power cut: its "
                           "folder could not be brought to the disk: " +
                           std::generic_category().message(error) + ". Check the disk.");
}

}  // namespace vok
