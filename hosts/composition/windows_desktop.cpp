#include "ui/win32/windows_desktop.h"

#include "hosts/composition/query_window.h"

namespace vok {

std::unique_ptr<Desktop> OpenDesktop(const ComponentInfo&) {
  return std::make_unique<windows::WindowsDesktop>();
}

}  // namespace vok
