#include "system/windows/pumped_wait.h"

#include <utility>

namespace vok::windows {

PumpedWait::PumpedWait(Dispatch dispatch) : dispatch_(std::move(dispatch)) {}

PumpedWait::~PumpedWait() {
  if (quit_) ::PostQuitMessage(*quit_);
}

std::size_t PumpedWait::For(std::span<const HANDLE> events) {
  const auto count = static_cast<DWORD>(events.size());
  for (;;) {
    const DWORD woken = ::MsgWaitForMultipleObjectsEx(count, events.data(), INFINITE, QS_ALLINPUT,
                                                      MWMO_INPUTAVAILABLE);
    if (woken < WAIT_OBJECT_0 + count) return woken - WAIT_OBJECT_0;
    // One at a time: timers may bring more than can be dispatched.
    MSG message;
    if (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) == FALSE) continue;
    if (message.message == WM_QUIT) {
      quit_ = static_cast<int>(message.wParam);
    } else {
      dispatch_(message);
    }
  }
}

void PumpedWait::DispatchPlainly(MSG& message) {
  ::TranslateMessage(&message);
  ::DispatchMessageW(&message);
}

}  // namespace vok::windows
