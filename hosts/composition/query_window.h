// The settings window on the desktop of this operating system.
#pragma once

#include <memory>

#include "ui/model/desktop_window.h"

namespace vok {

/// Opens what this system draws windows with. Failure 445 where it has nothing for that, or no
/// screen: it says what is missing and how to get it.
std::unique_ptr<Desktop> OpenDesktop(const ComponentInfo& component);

/// What `clMe` makes its window with. It is laid out as its language is read.
std::unique_ptr<QueryWindow> OpenQueryWindow(const Host& host, Publics& publics);

/// The same, laid out from right to left in any language.
std::unique_ptr<QueryWindow> OpenQueryWindowFromRight(const Host& host, Publics& publics);

}  // namespace vok
