#include <windows.h>

#include <string>
#include <utility>

#include "platform/whole_path.h"
#include "providers/database/sqlite/folder_lock.h"
#include "providers/database/sqlite/store_failure.h"

namespace vok {
namespace {

/// The same in every process for every spelling of one folder; empty when the folder tells nothing.
std::wstring MutexName(const std::string& file) {
  const auto parent = PathOfUtf8(file).parent_path();
  const HANDLE folder = ::CreateFileW(parent.empty() ? L"." : parent.c_str(), FILE_READ_ATTRIBUTES,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (folder == INVALID_HANDLE_VALUE) return {};
  BY_HANDLE_FILE_INFORMATION identity{};
  const bool known = ::GetFileInformationByHandle(folder, &identity) != 0;
  ::CloseHandle(folder);
  if (!known) return {};
  return L"Global\\VokCubeQ17 settings " + std::to_wstring(identity.dwVolumeSerialNumber) + L' ' +
         std::to_wstring(identity.nFileIndexHigh) + L' ' + std::to_wstring(identity.nFileIndexLow);
}

}  // namespace

// The system has no locks of folders that are shared: those who only pass through wait for each
// other too, which takes no time worth counting.
FolderLock::FolderLock(const std::string& file, Kind, int32_t seconds,
                       const LockPatience& patience) {
  const std::wstring name = MutexName(file);
  const HANDLE mutex = name.empty() ? nullptr : ::CreateMutexW(nullptr, FALSE, name.c_str());
  if (mutex == nullptr) return;
  LockWait wait(patience, file, patience.For(file, seconds));
  while (::WaitForSingleObject(mutex, 0) == WAIT_TIMEOUT) {
    if (wait.Goes()) continue;
    ::CloseHandle(mutex);
    ThrowUnusable(file, "another program held its folder locked for all of the " +
                            std::to_string(seconds) +
                            " seconds that were waited. Close that program, or try again.");
  }
  lock_ = reinterpret_cast<std::intptr_t>(mutex);
}

FolderLock::FolderLock(FolderLock&& other) noexcept : lock_(std::exchange(other.lock_, kNone)) {}

FolderLock& FolderLock::operator=(FolderLock&& other) noexcept {
  std::swap(lock_, other.lock_);
  return *this;
}

FolderLock::~FolderLock() {
  if (lock_ == kNone) return;
  const auto mutex = reinterpret_cast<HANDLE>(lock_);
  ::ReleaseMutex(mutex);
  ::CloseHandle(mutex);
}

}  // namespace vok
