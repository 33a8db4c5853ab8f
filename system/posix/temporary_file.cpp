#include "system/posix/temporary_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <utility>

namespace vok {
namespace {

namespace fs = std::filesystem;

constexpr int kMostAttempts = 1000;  // at a name that is free
constexpr std::string_view kStart = ".vokcube-";
constexpr std::string_view kEnd = ".tmp";

/// The newest of all slots. None is ever given back: a signal handler may be reading it.
std::atomic<TemporarySlot*> newest = nullptr;

}  // namespace

/// What a signal handler may read at any moment: the path of a temporary that is there.
struct TemporarySlot {
  std::atomic<bool> is_taken = true;
  std::atomic<bool> is_filled = false;
  std::array<char, PATH_MAX> path{};
  TemporarySlot* next = nullptr;
};

namespace {

TemporarySlot& TakeSlot() {
  for (TemporarySlot* slot = newest; slot != nullptr; slot = slot->next) {
    if (!slot->is_taken.exchange(true)) return *slot;
  }
  auto* slot = new TemporarySlot;
  slot->next = newest;
  while (!newest.compare_exchange_weak(slot->next, slot)) {
  }
  return *slot;
}

TemporarySlot* Note(const std::string& path) {
  TemporarySlot& slot = TakeSlot();
  std::snprintf(slot.path.data(), slot.path.size(), "%s", path.c_str());
  slot.is_filled = true;
  return &slot;
}

void Erase(TemporarySlot* slot) {
  slot->is_filled = false;
  slot->is_taken = false;
}

bool IsTemporaryName(std::string_view name) {
  return name.starts_with(kStart) && name.ends_with(kEnd) &&
         name.find_first_not_of("0123456789-", kStart.size()) == name.size() - kEnd.size();
}

/// The system's error, or 0: the file is now held against sweepers.
int Lock(const FileHandle& file) { return ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 ? 0 : errno; }

/// Whether a new file is not being removed by a sweeper. Where the file system knows no locks
/// nobody removes anything; where it does not say how the file is, the lock is enough.
bool IsOurs(const FileHandle& file) {
  struct stat status;
  return Lock(file) != EWOULDBLOCK && (::fstat(file.get(), &status) != 0 || status.st_nlink > 0);
}

/// Whether it is an ordinary file that nobody has removed since it was opened.
bool IsStillThere(const FileHandle& file) {
  struct stat status;
  return ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink > 0;
}

void RemoveAbandoned(const std::string& path) {
  const FileHandle file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (file.IsOpen() && Lock(file) == 0 && IsStillThere(file)) ::unlink(path.c_str());
}

/// What cannot be seen or removed stays for another time.
void Sweep(const std::string& folder) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (IsTemporaryName(entry->path().filename().native())) RemoveAbandoned(entry->path());
  }
}

}  // namespace

TemporaryFile::TemporaryFile(const std::string& folder, mode_t mode, const std::string& target) {
  static std::atomic<unsigned> serial{0};
  Sweep(folder);
  const std::string stem = folder + std::string(kStart) + std::to_string(::getpid()) + "-";
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    const std::string path = stem + std::to_string(serial++) + std::string(kEnd);
    slot_ = Note(path);  // before it is there: a signal may come at any moment
    file_ = FileHandle(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (file_.IsOpen() && IsOurs(file_)) {
      path_ = path;
      return;
    }
    const int error = file_.IsOpen() ? EEXIST : errno;
    Erase(slot_);
    if (error != EEXIST && error != EINTR) ThrowSystemFailure(error, "write", target);
  }
  ThrowSystemFailure(EEXIST, "write", target);
}

int TemporaryFile::RenameTo(const std::string& target) noexcept {
  if (::rename(path_.c_str(), target.c_str()) != 0) return errno;
  Forget();
  return 0;
}

void TemporaryFile::Remove() noexcept {
  if (!path_.empty()) ::unlink(path_.c_str());
  Forget();
}

void TemporaryFile::Forget() noexcept {
  if (!path_.empty()) Erase(slot_);
  path_.clear();
  file_.Reset();  // not before: the lock says that the name is in use
}

void RemoveTemporaries() noexcept {
  for (const TemporarySlot* slot = newest; slot != nullptr; slot = slot->next) {
    if (slot->is_filled) ::unlink(slot->path.data());
  }
}

}  // namespace vok
