// Keeps other processes from a settings file while it is being made, and keeps a command from
// waiting twice for their locks.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace vok {

/// The maker of a file holds the lock of its folder alone, one that opens it passes through a
/// shared lock: so nobody meets a file without its tables. A folder that cannot be locked (it is
/// not there, it must not be read, its file system knows no locks) is not: the next step tells.
class FolderLock {
 public:
  enum class Kind { kShared, kAlone };

  FolderLock() = default;
  /// Locks the folder of `file`, a native path. Waits `seconds` for others, without end when it is
  /// 0; then fails with -2147467259.
  FolderLock(const std::string& file, Kind kind, int32_t seconds);
  FolderLock(FolderLock&& other) noexcept;
  FolderLock& operator=(FolderLock&& other) noexcept;
  ~FolderLock();

 private:
  static constexpr std::intptr_t kNone = -1;

  std::intptr_t lock_ = kNone;  ///< the operating system's
};

/// A caller that has waited for a file in vain does not wait for it again at once: one command
/// often touches the file more than once. For the connections of one database, which are one
/// thread's.
class LockPatience {
 public:
  /// The time to wait for a lock of `file`: `seconds`, without end for 0; hardly any within a
  /// minute of a wait in vain.
  std::chrono::milliseconds For(const std::string& file, int32_t seconds) const;

  void WaitedInVain(const std::string& file);
  /// The lock was got.
  void Forget() { file_.clear(); }

 private:
  std::string file_;  ///< waited for in vain; empty: none
  std::chrono::steady_clock::time_point since_;
};

}  // namespace vok
