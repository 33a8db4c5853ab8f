#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "providers/database/sqlite/folder_lock.h"
#include "providers/database/sqlite/store_failure.h"

namespace vok {
namespace {

std::string FolderOf(const std::string& file) {
  const auto slash = file.rfind('/');
  return slash == std::string::npos ? "." : file.substr(0, slash + 1);
}

}  // namespace

FolderLock::FolderLock(const std::string& file, Kind kind, int32_t seconds,
                       const LockPatience& patience) {
  const int folder = ::open(FolderOf(file).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return;
  lock_ = folder;
  const int operation = (kind == Kind::kAlone ? LOCK_EX : LOCK_SH) | LOCK_NB;
  LockWait wait(patience, file, patience.For(file, seconds));
  while (::flock(folder, operation) != 0 && (errno == EWOULDBLOCK || errno == EINTR)) {
    if (wait.Goes()) continue;
    ::close(folder);
    ThrowUnusable(file, "another program held its folder locked for all of the " +
                            std::to_string(seconds) +
                            " seconds that were waited. Close that program, or try again.");
  }
}

FolderLock::FolderLock(FolderLock&& other) noexcept : lock_(std::exchange(other.lock_, kNone)) {}

FolderLock& FolderLock::operator=(FolderLock&& other) noexcept {
  std::swap(lock_, other.lock_);
  return *this;
}

FolderLock::~FolderLock() {
  if (lock_ != kNone) ::close(static_cast<int>(lock_));
}

}  // namespace vok
