#include "system/windows/system_error.h"

#include <algorithm>
#include <filesystem>

#include "platform/failure.h"
#include "platform/files.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

constexpr std::size_t kShortEnough = MAX_PATH - 13;  // leaves room for a name in a folder

bool IsFolder(const std::string& path) {
  const DWORD attributes = ::GetFileAttributesW(WidePath(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool FolderIsMissing(const std::string& path) {
  const auto slash = path.rfind('\\');
  return slash != std::string::npos && !IsFolder(path.substr(0, slash + 1));
}

int32_t NumberOf(DWORD error, const std::string& path) {
  namespace number = failure_number;
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
      return FolderIsMissing(path) ? number::kPathNotFound : number::kFileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_NOT_READY:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
      return number::kPathNotFound;
    case ERROR_DIRECTORY:
      return IsFolder(path) ? number::kPathAccess : number::kPathNotFound;
    case ERROR_ACCESS_DENIED:  // what the system says of folders, too
      return IsFolder(path) ? number::kPathAccess : number::kPermissionDenied;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_USER_MAPPED_FILE:
      return number::kPermissionDenied;
    case ERROR_ALREADY_EXISTS:
    case ERROR_FILE_EXISTS:
      return number::kFileExists;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return number::kDiskFull;
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
      return number::kBadFileName;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
    case ERROR_COMMITMENT_LIMIT:
      return number::kOutOfMemory;
    default:
      return number::kDeviceError;
  }
}

/// Where this system knows more than the number says; "" otherwise.
const char* AdviceOn(int32_t number, DWORD error) {
  if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION) {
    return "Close the program that has the file open.";
  }
  return number == failure_number::kPathAccess
             ? "It is a folder: give the name of an ordinary file."
             : "";
}

}  // namespace

void ThrowSystemFailure(DWORD error, const std::string& what, const std::string& path) {
  const int32_t number = NumberOf(error, path);
  ThrowFileFailure(number, what, path, SystemWords(error), AdviceOn(number, error));
}

std::string SystemWords(DWORD error, HMODULE module) {
  const DWORD source = module == nullptr ? 0 : FORMAT_MESSAGE_FROM_HMODULE;
  wchar_t text[512];
  DWORD length =
      ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | source, module,
                       error, 0, text, static_cast<DWORD>(std::size(text)), nullptr);
  while (length > 0 && (text[length - 1] <= L' ' || text[length - 1] == L'.')) --length;
  return length == 0 ? "system error " + std::to_string(error) : Utf8({text, length});
}

std::string NativePath(std::string path) {
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

std::wstring WidePath(const std::string& native) {
  const std::wstring wide = Utf16(native);
  if (wide.size() < kShortEnough || wide.starts_with(L"\\\\?\\")) return wide;
  std::error_code unknown;
  const std::wstring full = std::filesystem::absolute(wide, unknown).lexically_normal().wstring();
  if (unknown) return wide;
  return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

}  // namespace vok::windows
