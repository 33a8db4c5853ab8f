#include "providers/database/sqlite/folder_lock.h"

#include <algorithm>
#include <climits>
#include <thread>

namespace vok {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
constexpr std::chrono::minutes kRemembered{1};
constexpr milliseconds kHardly{100};
constexpr milliseconds kWithoutEnd{INT_MAX};
constexpr milliseconds kPause{5};

}  // namespace

milliseconds LockPatience::For(const std::string& file, int32_t seconds) const {
  const milliseconds asked =
      seconds == 0 ? kWithoutEnd : std::min(kWithoutEnd, milliseconds(int64_t{seconds} * 1000));
  const bool in_vain = file == file_ && steady_clock::now() - since_ < kRemembered;
  return in_vain ? std::min(kHardly, asked) : asked;
}

void LockPatience::WaitedInVain(const std::string& file) {
  file_ = file;
  since_ = steady_clock::now();
}

bool LockWait::Goes() {
  const auto waited = std::chrono::duration_cast<milliseconds>(steady_clock::now() - start_);
  if (waited >= most_ || !patience_.GoesOn(file_, waited)) return false;
  std::this_thread::sleep_for(kPause);
  return true;
}

}  // namespace vok
