#include "ui/win32/windows_desktop.h"

#include "hosts/composition/query_window.h"
#include "platform/failure.h"
#include "system/windows/windows_message_boxes.h"

namespace vok {

std::unique_ptr<Desktop> OpenDesktop(const ComponentInfo&) {
  if (!windows::HasVisibleScreen()) {
    throw Failure(failure_number::kNotSupported,
                  "No window can be shown: this program runs where nobody sees it, as services and "
                  "tasks of absent users do. Run it in a user's session.");
  }
  return std::make_unique<windows::WindowsDesktop>();
}

}  // namespace vok
