#include "system/windows/path_claim.h"

#include <functional>

#include "platform/files.h"
#include "system/windows/system_error.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

/// The same for every spelling of one path: its folder's identity and its last name.
std::wstring ClaimName(const std::string& path) {
  const auto last = path.find_last_of("\\:");
  const std::size_t cut = last == std::string::npos ? 0 : last + 1;
  const std::string folder_path = cut == 0 ? "." : path.substr(0, cut);
  const Handle folder(::CreateFileW(WidePath(folder_path).c_str(), FILE_READ_ATTRIBUTES,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  BY_HANDLE_FILE_INFORMATION identity{};
  if (!folder.IsOpen() || ::GetFileInformationByHandle(folder.get(), &identity) == 0) return {};
  const auto name = std::hash<std::string>{}(FoldedCase(path.substr(cut)));
  return L"Global\\VokCubeQ17 output " + std::to_wstring(identity.dwVolumeSerialNumber) + L' ' +
         std::to_wstring(identity.nFileIndexHigh) + L' ' + std::to_wstring(identity.nFileIndexLow) +
         L' ' + std::to_wstring(name);
}

/// A kernel object that has the name for as long as a process holds it.
class NamedClaim : public PathClaim {
 public:
  NamedClaim(const std::wstring& name, const std::string& path)
      : object_(::CreateMutexW(nullptr, FALSE, name.c_str())) {
    const DWORD error = ::GetLastError();
    const bool held = object_.IsOpen() ? error == ERROR_ALREADY_EXISTS
                                       : error == ERROR_ACCESS_DENIED;  // by another user
    if (!held) return;
    ThrowClaimed(path);
  }

 private:
  Handle object_;
};

}  // namespace

std::unique_ptr<PathClaim> ClaimPath(const std::string& path) {
  const std::wstring name = ClaimName(path);
  // Nothing can be written into a folder that is not there; the writer will say so.
  if (name.empty()) return std::make_unique<PathClaim>();
  return std::make_unique<NamedClaim>(name, path);
}

}  // namespace vok::windows
