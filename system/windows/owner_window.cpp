#include "system/windows/owner_window.h"

#include <utility>

namespace vok::windows {
namespace {

thread_local HWND front = nullptr;

}  // namespace

HWND OwnerWindow() {
  if (front != nullptr && ::IsWindow(front) != FALSE) return front;
  const HWND active = ::GetActiveWindow();
  return active == nullptr ? nullptr : ::GetAncestor(active, GA_ROOT);
}

FrontWindow::FrontWindow(HWND window) : behind_(std::exchange(front, window)) {}

FrontWindow::~FrontWindow() { front = behind_; }

}  // namespace vok::windows
