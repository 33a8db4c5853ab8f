// The operating system's errors as failures, its handles as owners, and paths as it takes them.
#pragma once

#include <string>
#include <utility>

#include "system/windows/system_header.h"

namespace vok::windows {

/// Throws the failure for a system error: the run-time library's number, "Cannot <what> "<path>"",
/// the system's own words and, where there is something to do about it, what.
[[noreturn]] void ThrowSystemFailure(DWORD error, const std::string& what, const std::string& path);

/// The system's own words, or those of one of its modules, without the stop at their end.
std::string SystemWords(DWORD error, HMODULE module = nullptr);

/// "\" between the parts.
std::string NativePath(std::string path);
/// A native path for the wide calls; a long one in the form that knows no limit of length.
std::wstring WidePath(const std::string& native);

/// What others may do with a file while it is open here.
inline constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Owns a handle of the kernel's; closes it.
class Handle {
 public:
  Handle() = default;
  explicit Handle(HANDLE handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Handle() { Reset(); }

  HANDLE get() const { return handle_; }
  bool IsOpen() const { return handle_ != nullptr; }
  void Reset() noexcept {
    if (IsOpen()) ::CloseHandle(std::exchange(handle_, nullptr));
  }

 private:
  HANDLE handle_ = nullptr;
};

}  // namespace vok::windows
