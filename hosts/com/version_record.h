// What the component's file says of itself.
#pragma once

#include "platform/host.h"

namespace vok::windows {

/// From the version record of the component's own file: major, minor and revision, the product's
/// name and the program's. A file without the record leaves the numbers 0 and the names empty.
ComponentInfo ReadComponentInfo();

}  // namespace vok::windows
