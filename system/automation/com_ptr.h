// A counted reference to an automation object. It owns one reference and gives it back.
#pragma once

#include <utility>

#include "system/automation/ole.h"

namespace vok::windows {

template <typename Interface>
class ComPtr {
 public:
  ComPtr() = default;
  /// Shares the object: adds a reference of its own.
  explicit ComPtr(Interface* object) : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }
  ComPtr(const ComPtr& other) : ComPtr(other.object_) {}
  ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPtr() {
    if (object_ != nullptr) object_->Release();
  }

  Interface* Get() const { return object_; }
  Interface* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

  /// For calls that hand out a reference of the caller's. The pointer must be empty.
  Interface** Receive() { return &object_; }
  /// The same for calls whose type is not told.
  void** ReceiveVoid() { return reinterpret_cast<void**>(&object_); }
  /// Hands its reference to the caller.
  Interface* Detach() { return std::exchange(object_, nullptr); }

 private:
  Interface* object_ = nullptr;
};

}  // namespace vok::windows
