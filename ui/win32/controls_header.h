// The system's headers of windows and their controls.
#pragma once

#include "system/windows/system_header.h"
// after the system's own header
#include <commctrl.h>
