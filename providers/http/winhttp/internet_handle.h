// Owns a handle of WinHTTP's.
#pragma once

#include <utility>

// The others need the first.
// clang-format off
#include "system/windows/system_header.h"
#include <winhttp.h>
// clang-format on

namespace vok::windows {

class InternetHandle {
 public:
  explicit InternetHandle(HINTERNET handle = nullptr) : handle_(handle) {}
  InternetHandle(InternetHandle&& other) noexcept
      : handle_(std::exchange(other.handle_, nullptr)) {}
  InternetHandle& operator=(InternetHandle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~InternetHandle() { Reset(); }

  HINTERNET get() const { return handle_; }
  bool IsOpen() const { return handle_ != nullptr; }
  void Reset() noexcept {
    if (IsOpen()) ::WinHttpCloseHandle(std::exchange(handle_, nullptr));
  }

 private:
  HINTERNET handle_;
};

}  // namespace vok::windows
