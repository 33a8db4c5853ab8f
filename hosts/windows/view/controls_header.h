// The system's headers of windows and their controls.
#pragma once

#include "hosts/windows/platform/system_header.h"
// after the system's own header
#include <commctrl.h>
