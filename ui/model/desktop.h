// A desktop: what draws the windows and stands message boxes in front of them.
#pragma once

#include "platform/message_box.h"
#include "ui/model/toolkit.h"

namespace vok {

/// Windows and boxes are shown by the thread that opened it; a box of another thread waits for that
/// one.
class Desktop : public Toolkit, public MessageBoxes {};

}  // namespace vok
