// Which window the dialogs of a thread belong to.
#pragma once

#include "system/windows/system_header.h"

namespace vok::windows {

/// Of the calling thread: our window that was shown last, else the window that is active, as a
/// host's own; nullptr for none.
HWND OwnerWindow();

/// While it lives, the window is the one that dialogs of this thread belong to.
class FrontWindow {
 public:
  explicit FrontWindow(HWND window);
  FrontWindow(const FrontWindow&) = delete;
  FrontWindow& operator=(const FrontWindow&) = delete;
  ~FrontWindow();

 private:
  HWND behind_;
};

}  // namespace vok::windows
