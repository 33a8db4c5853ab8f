// Pictures of windows.
#pragma once

#include <string>

#include "system/windows/system_header.h"

namespace vok::windows {

/// The window as the screen shows it, in a file "NAME.png" of the folder that the environment's
/// VOKCUBE_SCREENSHOTS names; nothing where it names none.
void TakePicture(HWND window, const std::string& name);

}  // namespace vok::windows
