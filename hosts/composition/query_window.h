// The settings window on the desktop of this operating system.
#pragma once

#include <memory>

#include "ui/model/desktop_window.h"

namespace vok {

/// Opens what this system draws windows with. Failure 445 where it has nothing for that, or no
/// screen: it says what is missing and how to get it.
std::unique_ptr<Desktop> OpenDesktop(const ComponentInfo& component);

/// What `clMe` makes its window with.
inline std::unique_ptr<QueryWindow> OpenQueryWindow(const Host& host, Publics& publics) {
  return std::make_unique<DesktopWindow>(OpenDesktop(host.component), host, publics);
}

}  // namespace vok
