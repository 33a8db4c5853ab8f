// The one host and the one set of process-wide values that all objects of a host process share.
#pragma once

#include "component/cl_me.h"

namespace vok::windows {

/// Made by the first call, kept until the component is unloaded. Failures: those of finding out
/// about the component and the system.
clMe& TheClMe();

}  // namespace vok::windows
