// Message boxes of the windows.
#pragma once

#include <string>

#include "ui/toolkit.h"

namespace vok {

/// An empty title is the platform's own.
MessageAnswer ShowMessage(const WindowServices& services, const std::string& text,
                          const std::string& title = {}, MessageIcon icon = MessageIcon::kNone,
                          MessageButtons buttons = MessageButtons::kOk);

}  // namespace vok
