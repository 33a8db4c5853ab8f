// The one host and the one set of process-wide values that all objects of a host process share, and
// what the component's file says of itself.
#pragma once

#include "component/cl_me.h"
#include "platform/host.h"

namespace vok::windows {

/// From the version record of the component's own file: major, minor and revision, the product's
/// name and the program's. A file without the record leaves the numbers 0 and the names empty.
ComponentInfo ReadComponentInfo();

/// Made by the first call, kept until the component is unloaded. Failures: those of finding out
/// about the component and the system.
clMe& TheClMe();

}  // namespace vok::windows
