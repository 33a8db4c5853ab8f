// Message boxes on the user's screen: where it is, and which window they belong to.
#pragma once

#include "platform/message_box.h"
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

/// Whether a person can see the windows of this process. Nobody sees those of a service or of a
/// task that runs while its user is away: they would wait for an answer for ever.
bool HasVisibleScreen();

/// Shown over the calling thread's window in front (owner_window.h), or over all when it has none;
/// blocks until answered. A box with help opens its file at its context when the user asks. Without
/// a title it bears the component's name.
class WindowsMessageBoxes : public MessageBoxes {
 public:
  MessageAnswer Show(const MessageBox& box) override;
};

}  // namespace vok::windows
