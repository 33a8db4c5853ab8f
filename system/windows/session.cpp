#include "system/windows/session.h"

#include "system/windows/system_header.h"

namespace vok::windows {

bool HasVisibleScreen() {
  USEROBJECTFLAGS flags{};
  DWORD needed = 0;
  const BOOL told = ::GetUserObjectInformationW(::GetProcessWindowStation(), UOI_FLAGS, &flags,
                                                sizeof flags, &needed);
  return told == FALSE || (flags.dwFlags & WSF_VISIBLE) != 0;
}

}  // namespace vok::windows
