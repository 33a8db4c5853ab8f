// What our windows need around them and a host's windows must not notice: the newer look of the
// controls, and sharp drawing on screens of any density.
#pragma once

#include "ui/win32/controls_header.h"

namespace vok::windows {

/// The file that this code was loaded from, ours.
HINSTANCE ThisInstance();

/// While it lives, windows that this thread makes are ours in look and density. Both stay with the
/// window; the thread and its process are as before afterwards. Where the system or our file
/// offers less, windows look as the system gives them.
class OwnLook {
 public:
  OwnLook();
  OwnLook(const OwnLook&) = delete;
  OwnLook& operator=(const OwnLook&) = delete;
  ~OwnLook();

 private:
  HANDLE styles_;
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
  DPI_AWARENESS_CONTEXT awareness_ = nullptr;
};

/// Dots per inch of the screen that the window is on.
int DensityOf(HWND window);

/// Takes the changing of the screen's density into our own hands.
void HandleDensityOurselves(HWND dialog);

}  // namespace vok::windows
