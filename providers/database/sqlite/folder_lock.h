// Keeps other processes from a settings file while it is being made, and keeps a command from
// waiting twice for their locks.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

namespace vok {

/// Asked at each pause of a wait for a lock of `file` that has lasted `waited`: whether to go on.
using GoesOnWaiting =
    std::function<bool(const std::string& file, std::chrono::milliseconds waited)>;

/// A caller that has waited for a file in vain does not wait for it again at once: one command
/// often touches the file more than once. For the connections of one database, which are one
/// thread's.
class LockPatience {
 public:
  /// `goes_on` may be empty.
  explicit LockPatience(GoesOnWaiting goes_on = {}) : goes_on_(std::move(goes_on)) {}
  bool GoesOn(const std::string& file, std::chrono::milliseconds waited) const {
    return !goes_on_ || goes_on_(file, waited);
  }
  /// The time to wait for a lock of `file`: `seconds`, without end for 0; hardly any within a
  /// minute of a wait in vain.
  std::chrono::milliseconds For(const std::string& file, int32_t seconds) const;
  void WaitedInVain(const std::string& file);
  /// The lock was got.
  void Forget() { file_.clear(); }

 private:
  GoesOnWaiting goes_on_;
  std::string file_;  ///< waited for in vain; empty: none
  std::chrono::steady_clock::time_point since_;
};

/// One wait for the lock of a file, of the file itself or of its folder.
class LockWait {
 public:
  /// At most `most`. `patience`, which outlives the wait, may end it sooner.
  LockWait(const LockPatience& patience, std::string file, std::chrono::milliseconds most)
      : patience_(patience), file_(std::move(file)), most_(most) {}
  /// Pauses until the next try; false when that was long enough.
  bool Goes();

 private:
  const LockPatience& patience_;
  std::string file_;
  std::chrono::milliseconds most_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// The maker of a file holds the lock of its folder alone, one that opens it passes through a
/// shared lock: so nobody meets a file without its tables. A folder that cannot be locked (it is
/// not there, it must not be read, its file system knows no locks) is not: the next step tells.
class FolderLock {
 public:
  enum class Kind { kShared, kAlone };

  FolderLock() = default;
  /// Locks the folder of `file`, a native path. Waits `seconds` for others, without end when it is
  /// 0; then fails with -2147467259.
  FolderLock(const std::string& file, Kind kind, int32_t seconds, const LockPatience& patience);
  FolderLock(FolderLock&& other) noexcept;
  FolderLock& operator=(FolderLock&& other) noexcept;
  ~FolderLock();

 private:
  static constexpr std::intptr_t kNone = -1;

  std::intptr_t lock_ = kNone;  ///< the operating system's
};

}  // namespace vok
