#include "providers/sqlite/folder_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

#include "providers/sqlite/store_failure.h"

namespace vok {
namespace {

using std::chrono::steady_clock;
constexpr std::chrono::milliseconds kPause{5};

std::string FolderOf(const std::string& file) {
  const auto slash = file.rfind('/');
  return slash == std::string::npos ? "." : file.substr(0, slash + 1);
}

}  // namespace

FolderLock::FolderLock(const std::string& file, Kind kind, int32_t seconds)
    : folder_(::open(FolderOf(file).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (folder_ < 0) return;
  const int operation = (kind == Kind::kAlone ? LOCK_EX : LOCK_SH) | LOCK_NB;
  const auto end = steady_clock::now() + std::chrono::seconds(seconds);
  while (::flock(folder_, operation) != 0 && (errno == EWOULDBLOCK || errno == EINTR)) {
    if (seconds > 0 && steady_clock::now() >= end) {
      ::close(folder_);
      ThrowUnusable(file, "another program held its folder locked for all of the " +
                              std::to_string(seconds) +
                              " seconds that were waited. Close that program, or try again.");
    }
    std::this_thread::sleep_for(kPause);
  }
}

FolderLock::FolderLock(FolderLock&& other) noexcept : folder_(std::exchange(other.folder_, -1)) {}

FolderLock& FolderLock::operator=(FolderLock&& other) noexcept {
  std::swap(folder_, other.folder_);
  return *this;
}

FolderLock::~FolderLock() {
  if (folder_ >= 0) ::close(folder_);
}

}  // namespace vok
