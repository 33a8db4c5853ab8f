// The list of what a cube lacks for saved queries, in a window.
#pragma once

#include <string>

#include "ui/model/toolkit.h"

namespace vok {

/// Shows the list, when there is anything in it. A cube that cannot be asked shows nothing: why has
/// been told by then.
void ShowLacks(const WindowServices& services, const std::string& cube_file,
               const std::string& catalog);

}  // namespace vok
