// How long locks of other programs are waited for.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace vok {

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
