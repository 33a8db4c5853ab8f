#include "hosts/system/query_window.h"
#include "hosts/windows/view/windows_desktop.h"

namespace vok {

std::unique_ptr<Desktop> OpenDesktop(const ComponentInfo&) {
  return std::make_unique<windows::WindowsDesktop>();
}

}  // namespace vok
