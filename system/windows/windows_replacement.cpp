#include "system/windows/windows_replacement.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <vector>

#include "platform/files.h"

namespace vok::windows {
namespace {

constexpr int kMostAttempts = 1000;  // at a temporary name that is free
// Some headers leave out its name.
constexpr auto kRenameWithFlags = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);

std::wstring FolderOf(const std::wstring& path) {
  const auto slash = path.find_last_of(L"\\:");
  return slash == std::wstring::npos ? L"" : path.substr(0, slash + 1);
}

std::wstring FinalPath(const Handle& file) {
  const DWORD needed = ::GetFinalPathNameByHandleW(file.get(), nullptr, 0, 0);
  std::wstring path(needed, L'\0');
  path.resize(::GetFinalPathNameByHandleW(file.get(), path.data(), needed, 0));
  return path;
}

/// The file that is to be replaced, proven to be writable, or the name of one that is not there
/// yet.
std::wstring WritableTarget(const std::string& path) {
  const std::wstring wide = WidePath(path);
  const DWORD attributes = ::GetFileAttributesW(wide.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return wide;  // making the temporary will tell
  if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    ThrowSystemFailure(ERROR_ACCESS_DENIED, "write", path);
  }
  const Handle file(
      ::CreateFileW(wide.c_str(), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file.IsOpen()) ThrowSystemFailure(::GetLastError(), "write", path);
  if (::GetFileType(file.get()) != FILE_TYPE_DISK) ThrowNoOrdinaryFile("write", path);
  return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 ? FinalPath(file) : wide;
}

bool IsTemporaryName(const std::wstring& name) {
  constexpr std::size_t kStart = 9, kEnd = 4;  // ".vokcube-", ".tmp"
  return name.find_first_not_of(L"0123456789-", kStart) == name.size() - kEnd;
}

/// Removes the temporaries that nobody has open: processes that were killed have left them.
void Sweep(const std::wstring& folder) {
  WIN32_FIND_DATAW found{};
  const HANDLE search = ::FindFirstFileW((folder + L".vokcube-*.tmp").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    if (!IsTemporaryName(found.cFileName)) continue;
    const std::wstring path = folder + found.cFileName;
    const Handle alone(::CreateFileW(path.c_str(), DELETE, 0, nullptr, OPEN_EXISTING,
                                     FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_OPEN_REPARSE_POINT,
                                     nullptr));
  } while (::FindNextFileW(search, &found) != 0);
  ::FindClose(search);
}

/// Renames an open file over another one that may be open or mapped elsewhere: the one that has it
/// keeps the old contents. Only newer systems and their own file systems can do this.
bool RenameOverOpenFile(const Handle& file, const std::wstring& target) {
  const std::size_t name_bytes = target.size() * sizeof(wchar_t);
  std::vector<std::byte> memory(sizeof(FILE_RENAME_INFO) + name_bytes);
  auto* const info = reinterpret_cast<FILE_RENAME_INFO*>(memory.data());
  info->Flags = FILE_RENAME_FLAG_REPLACE_IF_EXISTS | FILE_RENAME_FLAG_POSIX_SEMANTICS;
  info->FileNameLength = static_cast<DWORD>(name_bytes);
  std::memcpy(info->FileName, target.data(), name_bytes);
  return ::SetFileInformationByHandle(file.get(), kRenameWithFlags, info,
                                      static_cast<DWORD>(memory.size())) != 0;
}

}  // namespace

void WriteAll(const Handle& file, std::span<const std::byte> bytes, const std::string& path) {
  constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce));
    if (::WriteFile(file.get(), bytes.data(), wanted, &written, nullptr) == 0) {
      ThrowSystemFailure(::GetLastError(), "write", path);
    }
    bytes = bytes.subspan(written);
  }
}

WindowsReplacement::WindowsReplacement(const std::string& path)
    : path_(path),
      target_(WritableTarget(path)),
      file_(NewTemporary(target_, GENERIC_WRITE | DELETE, 0, path_, temporary_)) {
  KeepPermissions();
}

Handle NewTemporary(const std::wstring& target, DWORD access, DWORD flags, const std::string& path,
                    std::wstring& name) {
  static std::atomic<unsigned> serial{0};
  Sweep(FolderOf(target));
  const std::wstring stem =
      FolderOf(target) + L".vokcube-" + std::to_wstring(::GetCurrentProcessId()) + L"-";
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    name = stem + std::to_wstring(serial++) + L".tmp";
    Handle file(::CreateFileW(name.c_str(), access, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                              CREATE_NEW, FILE_ATTRIBUTE_NORMAL | flags, nullptr));
    if (file.IsOpen()) return file;
    if (::GetLastError() != ERROR_FILE_EXISTS) break;
  }
  ThrowSystemFailure(::GetLastError(), "write", path);
}

void WindowsReplacement::KeepPermissions() {
  DWORD size = 0;
  ::GetFileSecurityW(target_.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  if (size == 0) return;
  std::vector<std::byte> permissions(size);
  if (::GetFileSecurityW(target_.c_str(), DACL_SECURITY_INFORMATION, permissions.data(), size,
                         &size) != 0) {
    ::SetFileSecurityW(temporary_.c_str(), DACL_SECURITY_INFORMATION, permissions.data());
  }
}

void WindowsReplacement::Write(std::span<const std::byte> bytes) {
  try {
    WriteAll(file_, bytes, path_);
  } catch (...) {
    Discard();
    throw;
  }
}

void WindowsReplacement::Commit() {
  if (temporary_.empty()) ThrowNothingToCommit(path_);
  if (::FlushFileBuffers(file_.get()) == 0 || !TakePlace()) {
    const DWORD error = ::GetLastError();
    Discard();
    ThrowSystemFailure(error, "write", path_);
  }
  temporary_.clear();
  if (file_.IsOpen()) ::FlushFileBuffers(file_.get());
  file_.Reset();
}

/// While the file is open no sweeper takes it away. Some file systems rename none that is.
bool WindowsReplacement::TakePlace() {
  const auto move = [this] {
    return ::MoveFileExW(temporary_.c_str(), target_.c_str(),
                         MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
  };
  if (RenameOverOpenFile(file_, target_) || move()) return true;
  file_.Reset();
  return move();
}

void WindowsReplacement::Discard() noexcept {
  file_.Reset();
  if (!temporary_.empty()) ::DeleteFileW(temporary_.c_str());
  temporary_.clear();
}

}  // namespace vok::windows
