// The interface and the identities of the type library, as the interface compiler writes them.
#pragma once

#include <VokCubeQ17.h>
// after it: it brings the platform's headers along
#include "system/automation/ole.h"

namespace vok::windows {

inline const IID& kInterfaceId = __uuidof(::_clMe);
inline const CLSID& kClassId = __uuidof(::clMe);

}  // namespace vok::windows
