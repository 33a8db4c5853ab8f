#include "system/windows/file_readers.h"

// The others need the first.
// clang-format off
#include "system/windows/system_header.h"
#include <aclapi.h>
// clang-format on

#include <algorithm>
#include <memory>

#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

constexpr WELL_KNOWN_SID_TYPE kOthers[] = {WinWorldSid, WinAuthenticatedUserSid,
                                           WinBuiltinUsersSid};

bool IsOfOthers(PSID sid) {
  return std::any_of(std::begin(kOthers), std::end(kOthers),
                     [sid](WELL_KNOWN_SID_TYPE type) { return ::IsWellKnownSid(sid, type) != 0; });
}

bool LetsOthersRead(ACL& list, DWORD index) {
  void* entry = nullptr;
  if (::GetAce(&list, index, &entry) == 0) return false;
  auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
  return allowed->Header.AceType == ACCESS_ALLOWED_ACE_TYPE &&
         (allowed->Mask & (FILE_READ_DATA | GENERIC_READ | GENERIC_ALL)) != 0 &&
         IsOfOthers(&allowed->SidStart);
}

}  // namespace

std::string AdviceOnReaders(const std::string& native_path) {
  ACL* list = nullptr;
  PSECURITY_DESCRIPTOR rights = nullptr;
  if (::GetNamedSecurityInfoW(Utf16(native_path).c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION,
                              nullptr, nullptr, &list, nullptr, &rights) != ERROR_SUCCESS) {
    return {};
  }
  const std::unique_ptr<void, decltype(&::LocalFree)> owner(rights, &::LocalFree);
  bool readable = list == nullptr;  // no list: all that is there may be done
  for (DWORD i = 0; list != nullptr && i < list->AceCount; ++i) {
    readable = readable || LetsOthersRead(*list, i);
  }
  return readable ? "icacls \"" + native_path + "\" /inheritance:r /grant:r \"%USERNAME%:F\"" : "";
}

}  // namespace vok::windows
