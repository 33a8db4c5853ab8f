// Message boxes on the user's screen.
#pragma once

#include "platform/message_box.h"

namespace vok::windows {

/// Shown over the calling thread's window in front (owner_window.h), or over all when it has none;
/// blocks until answered. A box with help opens its file at its context when the user asks. Without
/// a title it bears the component's name.
class WindowsMessageBoxes : public MessageBoxes {
 public:
  MessageAnswer Show(const MessageBox& box) override;
};

}  // namespace vok::windows
