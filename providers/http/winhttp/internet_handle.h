// Owns a handle of WinHTTP's.
#pragma once

#include <utility>

#include "providers/http/winhttp/winhttp_functions.h"

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
    if (IsOpen()) WinHttp().CloseHandle(std::exchange(handle_, nullptr));
  }

 private:
  HINTERNET handle_;
};

}  // namespace vok::windows
