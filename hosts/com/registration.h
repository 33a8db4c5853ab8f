// The component's entries in the registry.
#pragma once

#include "system/automation/ole.h"

namespace vok::windows {

/// For all users of the machine, or for the current one alone.
enum class Audience { kMachine, kUser };

/// Status codes are the registry's: ERROR_SUCCESS, ERROR_ACCESS_DENIED and so on. The 32-bit and
/// the 64-bit component have entries of their own side by side.
LSTATUS Register(Audience audience);
/// Removes all our entries, except those that the component of the other width still needs.
LSTATUS Unregister(Audience audience);

}  // namespace vok::windows
